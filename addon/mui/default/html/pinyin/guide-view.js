// SPDX-License-Identifier: MIT
// The "#/guide" view, shown when there was nothing selected: a drawing of a slide with
// selected text and the command's button, the two steps, and a button that closes.
(function (ns) {
  'use strict';

  var el = ns.dom.el;
  var svg = ns.dom.svg;
  var ACCENT = '#f59e0b';

  function badge(x, y, number) {
    return svg('g', { class: 'badge' }, [
      svg('circle', { cx: x, cy: y, r: 11, fill: ACCENT }),
      svg('text', { x: x, y: y + 4.5, 'text-anchor': 'middle', 'font-size': 13, 'font-weight': 700, fill: '#fff' },
        String(number))
    ]);
  }

  function handle(x, y) {
    return svg('rect', { x: x - 3, y: y - 3, width: 6, height: 6, fill: '#fff', stroke: '#6b7c93' });
  }

  // A presentation window: tabs and the command's button on top, a slide below with a text
  // box whose text is selected. Badges 1 and 2 match the numbered steps under it.
  function picture(texts) {
    return svg('svg', {
      class: 'guide-picture', viewBox: '0 0 578 216', width: 578, height: 216, role: 'img',
      'aria-label': texts.get('guideStep1') + ' ' + texts.get('guideStep2')
    }, [
      svg('rect', { x: 40, y: 6, width: 498, height: 204, rx: 10, fill: '#f3f5f8', stroke: '#d5dbe3' }),
      svg('path', { d: 'M40 52 V16 a10 10 0 0 1 10 -10 H528 a10 10 0 0 1 10 10 V52 Z', fill: '#e6ebf2' }),
      svg('rect', { x: 58, y: 22, width: 44, height: 14, rx: 4, fill: '#cdd5e0' }),
      svg('rect', { x: 112, y: 22, width: 44, height: 14, rx: 4, fill: '#cdd5e0' }),
      svg('rect', { x: 166, y: 22, width: 44, height: 14, rx: 4, fill: '#cdd5e0' }),
      svg('rect', { x: 392, y: 14, width: 126, height: 30, rx: 6, fill: '#2f6fed' }),
      svg('text', { x: 455, y: 34, 'text-anchor': 'middle', 'font-size': 13, fill: '#fff' }, texts.get('guideRibbon')),
      badge(518, 14, 2),
      svg('rect', { x: 114, y: 70, width: 358, height: 130, fill: '#e1e6ee' }),
      svg('rect', { x: 110, y: 66, width: 358, height: 130, fill: '#fff', stroke: '#d5dbe3' }),
      svg('rect', { x: 150, y: 102, width: 262, height: 60, fill: 'none', stroke: '#8796ab', 'stroke-dasharray': '4 3' }),
      handle(150, 102), handle(412, 102), handle(150, 162), handle(412, 162),
      svg('rect', { x: 166, y: 114, width: 146, height: 36, fill: '#cfe0ff' }),
      svg('text', { x: 170, y: 142, 'font-size': 27, fill: '#1f2937', lang: 'zh-CN' }, '春眠不觉晓'),
      svg('line', { x1: 314, y1: 112, x2: 314, y2: 152, stroke: '#1f2937', 'stroke-width': 2 }),
      svg('path', {
        d: 'M322 146 l0 24 l6 -6 l5 10 l4 -2 l-5 -10 l8 0 Z',
        fill: '#fff', stroke: '#1f2937', 'stroke-width': 1.5, 'stroke-linejoin': 'round'
      }),
      badge(160, 104, 1)
    ]);
  }

  function step(number, text) {
    return el('li', null, [el('span', { class: 'step-number', 'aria-hidden': 'true' }, String(number)), text]);
  }

  // Builds the view into root. context: texts, footerStart (elements before the button).
  function render(root, context) {
    var texts = context.texts;
    var closeButton = el('button', { type: 'button', class: 'button primary guide-close', on: { click: ns.host.closeWindow } },
      texts.get('guideClose'));
    root.appendChild(el('section', { class: 'guide' }, [
      el('h2', { class: 'guide-heading' }, texts.get('guideHeading')),
      el('p', { class: 'guide-intro' }, texts.get('guideIntro')),
      picture(texts),
      el('ol', { class: 'guide-steps' }, [step(1, texts.get('guideStep1')), step(2, texts.get('guideStep2'))]),
      el('p', { class: 'guide-note' }, texts.get('guideNote').replace('%1', ns.writing.MAX_UNITS))
    ]));
    root.appendChild(el('div', { class: 'footer' }, context.footerStart.concat([
      el('span', { class: 'spacer' }), closeButton
    ])));
    closeButton.focus();
    return { confirm: ns.host.closeWindow };
  }

  ns.guideView = { render: render };
})(window.zphonetic = window.zphonetic || {});
