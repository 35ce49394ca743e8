// SPDX-License-Identifier: MIT
// The page's only way to the native side: window.zxHost, injected by the host before any
// script of the page runs. Every call returns a Promise of the native reply.
(function (ns) {
  'use strict';

  // False when the page runs without its host (opened in a plain browser, say).
  function available() {
    var host = window.zxHost;
    return Boolean(host && typeof host.call === 'function');
  }

  // Calls a bridge method and resolves to its reply parsed from JSON text, or to null when
  // the method stored no reply. Rejects when the host is missing or refuses the call, so
  // the caller decides what the user sees.
  function call(method, args) {
    if (!available()) {
      return Promise.reject(new Error('no host'));
    }
    var reply;
    try {
      reply = window.zxHost.call(method, args || {});
    } catch (error) {
      return Promise.reject(error);
    }
    return Promise.resolve(reply).then(parseReply);
  }

  function parseReply(reply) {
    if (reply === null || reply === undefined || reply === '') {
      return null;
    }
    if (typeof reply !== 'string') {
      return reply;
    }
    try {
      return JSON.parse(reply);
    } catch (error) {
      return null;
    }
  }

  // Asks the host to open a help address in the system browser; false when it cannot.
  function openBrowser(url) {
    var host = window.zxHost;
    if (!host || typeof host.openBrowser !== 'function') {
      return false;
    }
    try {
      host.openBrowser(url);
      return true;
    } catch (error) {
      return false;
    }
  }

  // Cancel, the close button, Escape: the host turns the page's close request into closing
  // the dialog, without writing anything.
  function closeWindow() {
    window.close();
  }

  ns.host = { available: available, call: call, openBrowser: openBrowser, closeWindow: closeWindow };
})(window.zphonetic = window.zphonetic || {});
