// SPDX-License-Identifier: MIT
// A tiny element builder, so the views read as the structure they produce.
(function (ns) {
  'use strict';

  var SVG_NS = 'http://www.w3.org/2000/svg';

  function append(node, children) {
    (Array.isArray(children) ? children : [children]).forEach(function (child) {
      if (child === null || child === undefined || child === false) {
        return;
      }
      node.appendChild(typeof child === 'string' ? document.createTextNode(child) : child);
    });
    return node;
  }

  function assign(node, attributes) {
    Object.keys(attributes || {}).forEach(function (name) {
      var value = attributes[name];
      if (value === null || value === undefined || value === false) {
        return;
      }
      if (name === 'on') {
        Object.keys(value).forEach(function (type) { node.addEventListener(type, value[type]); });
      } else {
        node.setAttribute(name, value === true ? '' : String(value));
      }
    });
    return node;
  }

  // el('button', {class: 'x', on: {click: f}}, ['text', child]).
  function el(tag, attributes, children) {
    return append(assign(document.createElement(tag), attributes), children);
  }

  function svg(tag, attributes, children) {
    return append(assign(document.createElementNS(SVG_NS, tag), attributes), children);
  }

  // Text with every kind of line break of a slide (paragraph, line, Unicode separators)
  // shown as a line break, so the preview wraps the way the slide will.
  function textWithBreaks(text) {
    var fragment = document.createDocumentFragment();
    text.split(/\r\n|[\r\n\u000B\u2028\u2029]/).forEach(function (line, position) {
      if (position > 0) {
        fragment.appendChild(document.createElement('br'));
      }
      if (line !== '') {
        fragment.appendChild(document.createTextNode(line));
      }
    });
    return fragment;
  }

  function clear(node) {
    while (node.firstChild) {
      node.removeChild(node.firstChild);
    }
    return node;
  }

  ns.dom = { el: el, svg: svg, textWithBreaks: textWithBreaks, clear: clear };
})(window.zphonetic = window.zphonetic || {});
