// Carries messages between the page and the program. Runs in a world of its own, beside the page's: the page shares the
// document with it but none of its variables and functions, and what the page redefines is redefined in the page's world
// only. The channel to the program exists in this world alone, and in the main frame alone.
//
// A message goes in pieces, of which the program has answered all but a few before another is sent, so that no message
// keeps the program's main thread for long, and a page that says more than is heard fills nobody's memory but its own.
(function (token, names) {
  'use strict';
  // The engine's own empty page in place of one that cannot be had.
  if (location.protocol === 'chrome-error:') {
    return;
  }
  const pieceLength = 1024 * 1024;
  // While the program takes one, the next is on its way.
  const mostUnanswered = 2;
  const longestQueue = 16;
  const restBetweenMessages = 5; // milliseconds

  // Tells this document from those before and after it.
  const documentName = Array.from(crypto.getRandomValues(new Uint32Array(4)), part => part.toString(16)).join('-');

  let program = null;
  let sending = false;
  let count = 0;
  const queue = [];

  function pieceOf(message, index) {
    const start = index * pieceLength;
    const isText = message.body !== null;
    const length = isText ? message.body.length : 0;
    return {
      document: documentName,
      message: message.number,
      index,
      length,
      name: message.name,
      origin: message.origin,
      text: isText ? message.body.substr(start, pieceLength) : null,
      last: start + pieceLength >= length
    };
  }

  function sendPieces(message, done) {
    let next = 0;
    let unanswered = 0;
    let isOver = false;
    function proceed() {
      while (!isOver && unanswered < mostUnanswered) {
        const piece = pieceOf(message, next++);
        isOver = piece.last;
        ++unanswered;
        program.take(piece, accepted => {
          --unanswered;
          isOver = isOver || !accepted;
          proceed();
        });
      }
      if (isOver && unanswered === 0) {
        done();
      }
    }
    proceed();
  }

  function send() {
    if (program && !sending && queue.length > 0) {
      sending = true;
      sendPieces(queue.shift(), () => setTimeout(() => { sending = false; send(); }, restBetweenMessages));
    }
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

  // A screenshot on its way to the page, in pieces as well. The program calls these.
  let handOver = null;
  window.lumenfoldHandOver = {
    begin(number, message, origin) {
      if (new URL(origin).origin !== self.origin) {
        throw new Error('the page is of another origin');
      }
      handOver = { number, message, parts: [] };
    },
    add(number, part) {
      if (!handOver || handOver.number !== number) {
        throw new Error('the page was left meanwhile');
      }
      handOver.parts.push(part);
    },
    end(number, origin) {
      if (!handOver || handOver.number !== number) {
        throw new Error('the page was left meanwhile');
      }
      const message = handOver.message;
      message.src = handOver.parts.join('');
      handOver = null;
      window.postMessage(message, origin);
    }
  };

  new QWebChannel(qt.webChannelTransport, channel => {
    program = channel.objects.program;
    program.documentCreated();
    send();
  });
})('%TOKEN%', '%NAMES%'.split(' '));
