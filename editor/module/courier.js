// Carries messages between the page and the program. Runs in a world of its own, beside the page's: the page shares the
// document with it but none of its variables and functions, and what the page redefines is redefined in the page's world
// only. The channel to the program exists in this world alone, and in the main frame alone.
//
// The program hears of one message at a time. A short text goes with that; a long one the program fetches part by part,
// when it wants it at all, so that no message keeps its main thread for long, and a page that says more than is heard
// fills nobody's memory but its own.
(function (token, names) {
  'use strict';
  // The engine's own empty page in place of one that cannot be had.
  if (location.protocol === 'chrome-error:') {
    return;
  }
  const longestShortText = 16 * 1024;
  const longestQueue = 16;
  const restBetweenMessages = 5; // milliseconds

  // Tells this document from those before and after it.
  const documentName = Array.from(crypto.getRandomValues(new Uint32Array(4)), part => part.toString(16)).join('-');

  let program = null;
  // The message that the program has heard of.
  let current = null;
  let isResting = false;
  let count = 0;
  const queue = [];
  const encoder = new TextEncoder();

  function finish(number) {
    if (current && current.number === number) {
      current = null;
      isResting = true;
      setTimeout(() => { isResting = false; send(); }, restBetweenMessages);
    }
  }

  function send() {
    if (!program || current || isResting || queue.length === 0) {
      return;
    }
    current = queue.shift();
    const { name, number, origin, body } = current;
    const isText = body !== null;
    const isShort = isText && body.length <= longestShortText;
    program.take({ document: documentName, message: number, name, origin, isText,
                   length: isText ? body.length : 0, text: isShort ? body : null },
                 fetches => fetches || finish(number));
  }

  function post(name, message) {
    if (queue.length >= longestQueue) {
      return;
    }
    // The engine's word for where this document comes from, not the page's.
    queue.push({ name, number: count++, origin: self.origin, body: typeof message === 'string' ? message : null });
    send();
  }

  const handlers = {};
  for (const name of names) {
    handlers[name] = { postMessage: message => post(name, message) };
    window.addEventListener(token + name, event => {
      event.stopImmediatePropagation();
      post(name, event.detail);
    });
  }
  // For the bridge script, which runs in this world too.
  window.webkit = { messageHandlers: handlers };

  // The engine does not tell a link that is clicked from a script that goes elsewhere, so links are caught here, behind
  // all that the page does with the click. What opens another window, or is a download, the engine tells by itself.
  const longestAddress = 2 * 1024 * 1024;
  window.addEventListener('click', event => {
    const isPlain = event.button === 0 && !event.ctrlKey && !event.shiftKey && !event.metaKey && !event.altKey;
    const link = event.composedPath().find(element => element instanceof HTMLAnchorElement && element.href);
    if (!link || !isPlain || event.defaultPrevented || link.hasAttribute('download') ||
        !['', '_self', '_top', '_parent'].includes(link.target) || link.protocol === 'javascript:') {
      return;
    }
    const isHere = link.hash !== '' && link.href.split('#')[0] === location.href.split('#')[0];
    if (!isHere) {
      event.preventDefault();
      if (program && link.href.length <= longestAddress) {
        program.linkClicked(link.href);
      }
    }
  });

  // How the program fetches a long text: as bytes, which is what costs it least. It calls these.
  window.lumenfoldMessages = {
    part(document, number, start, length) {
      const isHere = document === documentName && current && current.number === number;
      return isHere ? encoder.encode(current.body.substr(start, length)) : null;
    },
    end(document, number) {
      if (document === documentName) {
        finish(number);
      }
    }
  };

  // A screenshot for the page is fetched from an address that the program has for it, once and for this origin. The
  // program calls this, and is told what became of it.
  window.lumenfoldHandOver = (number, address, message, origin) => {
    const ended = trouble => program.handOverEnded(number, trouble);
    if (new URL(origin).origin !== self.origin) {
      ended('the page is of another origin');
      return;
    }
    const request = new XMLHttpRequest();
    request.open('GET', address);
    request.onload = () => {
      message.src = request.response;
      window.postMessage(message, origin);
      ended('');
    };
    request.onerror = () => ended('it did not get into the page');
    request.send();
  };

  new QWebChannel(qt.webChannelTransport, channel => {
    program = channel.objects.program;
    program.documentCreated();
    send();
  });
})('%TOKEN%', '%NAMES%'.split(' '));
