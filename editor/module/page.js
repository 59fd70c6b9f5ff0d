// What the page itself finds of the bridge: window.webkit.messageHandlers.<name>.postMessage, and nothing else. Runs in
// the page's own world before anything of the page, so what it takes here is what the engine made, and stays so whatever
// the page puts in its place later. What it is given, it passes to the courier (courier.js) by events whose names the page
// is not told; a page that found them out could do no more with them than with the two functions.
(function (token, names) {
  'use strict';
  const apply = Reflect.apply;
  const dispatch = EventTarget.prototype.dispatchEvent;
  const CustomEvent = window.CustomEvent;
  const here = window;

  const handlers = { __proto__: null };
  for (const name of names) {
    handlers[name] = Object.freeze({
      postMessage(message) {
        const detail = typeof message === 'string' ? message : null;
        apply(dispatch, here, [new CustomEvent(token + name, { __proto__: null, detail })]);
      }
    });
  }
  Object.defineProperty(window, 'webkit', {
    value: Object.freeze({ messageHandlers: Object.freeze(handlers) }),
    enumerable: true
  });
})('%TOKEN%', '%NAMES%'.split(' '));
