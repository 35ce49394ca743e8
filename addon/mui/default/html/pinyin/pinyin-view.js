// SPDX-License-Identifier: MIT
// The "#/pinyin" view: every character with its reading above it, the layout and bracket
// choices, a live preview of what will be written, and confirm or cancel.
(function (ns) {
  'use strict';

  var el = ns.dom.el;
  var writing = ns.writing;
  var LINE_BREAK = /^(\r\n|[\r\n\u000B\u2028\u2029])$/;
  // A made-up pair of readings for the small samples on the layout and bracket choices.
  var SAMPLE = [{ index: 0, text: '汉', pinyin: 'hàn' }, { index: 1, text: '字', pinyin: 'zì' }];

  function cellClass(entry, selectable) {
    if (selectable) {
      return 'cell polyphone';
    }
    if (LINE_BREAK.test(entry.text)) {
      return 'cell break';
    }
    if (entry.pinyin === '') {
      return 'cell other';
    }
    return entry.pinyin.trim() === '' ? 'cell no-reading' : 'cell';
  }

  function readingSelector(entry, position, texts, onChoose) {
    return el('select', {
      class: 'reading-choice',
      'aria-label': texts.format('readingOf', entry.text),
      'data-index': entry.index,
      on: { change: function (event) { onChoose(position, event.target.value); } }
    }, entry.options.map(function (option) {
      var current = option === entry.pinyin || (option === '' && entry.pinyin.trim() === '');
      return el('option', { value: option, selected: current }, option === '' ? '—' : option);
    }));
  }

  // Punctuation that must not start a line sticks to the character before it, and
  // punctuation that must not end one sticks to the character after it.
  var CLOSING = /^[，。、；：？！）》」』】〕〉”’,.;:?!)\]}]$/;
  var OPENING = /^[（《「『【〔〈“‘(\[{]$/;

  function unbreakableGroups(cells) {
    var groups = [];
    var glue = false;
    cells.forEach(function (cell) {
      if (groups.length > 0 && (glue || CLOSING.test(cell.text))) {
        groups[groups.length - 1].push(cell.node);
      } else {
        groups.push([cell.node]);
      }
      glue = OPENING.test(cell.text);
    });
    return groups.map(function (nodes) { return el('div', { class: 'cell-group' }, nodes); });
  }

  function readingsSection(model, texts, onChoose) {
    var cells = ns.readings.cellsOf(model.entries).map(function (cell) {
      var position = cell.positions[0];
      var entry = model.entries[position];
      var selectable = cell.positions.length === 1 && entry.options.length >= 2;
      var className = cellClass(entry, selectable);
      var reading = selectable
        ? readingSelector(entry, position, texts, onChoose)
        : el('span', { class: 'reading-text' }, entry.pinyin.trim());
      var shown = className === 'cell break' ? '\u21B5' : cell.text;
      return {
        text: cell.text,
        node: el('div', {
          class: className,
          'data-index': entry.index,
          title: className === 'cell no-reading' ? texts.get('noReading')
            : className === 'cell break' ? texts.get('lineBreak') : null
        }, [el('div', { class: 'reading' }, reading), el('div', { class: 'char' }, shown)])
      };
    });
    return el('section', { class: 'readings', 'aria-labelledby': 'readings-heading' }, [
      el('div', { class: 'section-head' }, [
        el('h2', { id: 'readings-heading' }, texts.get('readingsHeading')),
        el('span', { class: 'hint' }, texts.get('readingsHint'))
      ]),
      el('div', { class: 'cells', lang: 'zh-CN' }, unbreakableGroups(cells))
    ]);
  }

  function radioOption(name, value, checked, title, sample, onPick) {
    return el('label', { class: 'option' }, [
      el('input', {
        type: 'radio', name: name, value: value, checked: checked,
        on: { change: function () { onPick(value); } }
      }),
      el('span', { class: 'option-body' }, [
        el('span', { class: 'option-sample', 'aria-hidden': 'true', lang: 'zh-CN' }, sample),
        el('span', { class: 'option-title' }, title)
      ])
    ]);
  }

  function runsOf(box) {
    return box.runs.map(function (run) {
      return el(run.bold ? 'strong' : 'span', { class: 'run' }, ns.dom.textWithBreaks(run.text));
    });
  }

  function layoutSample(styleType, bracketType) {
    var boxes = writing.writtenBoxes(SAMPLE, styleType, bracketType);
    return boxes.map(function (box) {
      return el('span', { class: 'sample-box sample-' + box.kind }, runsOf(box));
    });
  }

  function bracketSample(bracketType) {
    var text = writing.groupedReadings([SAMPLE[0]], bracketType);
    return el(writing.readingsAreBold(bracketType) ? 'strong' : 'span', null, text);
  }

  function choicesSection(state, texts, onLayout, onBracket) {
    var layouts = [1, 2, 3].map(function (type) {
      return radioOption('layout', type, type === state.styleType, texts.get('layout' + type),
        layoutSample(type, state.bracketType), onLayout);
    });
    var brackets = [1, 2, 3, 4, 5].map(function (type) {
      return radioOption('bracket', type, type === state.bracketType, texts.get('bracket' + type),
        bracketSample(type), onBracket);
    });
    return el('div', { class: 'choices' }, [
      el('fieldset', { class: 'layouts' }, [
        el('legend', null, texts.get('layoutHeading')), el('div', { class: 'option-row' }, layouts)
      ]),
      el('fieldset', { class: 'brackets' }, [
        el('legend', null, texts.get('bracketHeading')), el('div', { class: 'option-row' }, brackets)
      ])
    ]);
  }

  // Light text (white on a dark slide, say) would vanish on the white preview: show it on
  // a dark ground instead.
  function isLight(colour) {
    var parts = colour.match(/\d+/g).map(Number);
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2] > 200;
  }

  function previewBoxes(boxes, colour, texts) {
    return boxes.map(function (box) {
      var caption = box.kind === 'newBox' ? texts.get('previewNewBox')
        : box.changed ? texts.get('previewSelection') : texts.get('previewUnchanged');
      var written = box.runs.map(function (run) { return run.text; }).join('');
      // The colour is set through the element's style object: the page's policy refuses style
      // attributes written as text.
      var text = el('div', { class: 'box-text', lang: 'zh-CN' }, runsOf(box));
      text.style.color = colour;
      return el('div', { class: 'box box-' + box.kind, 'data-kind': box.kind, 'data-text': written }, [
        el('span', { class: 'box-caption' }, caption),
        text
      ]);
    });
  }

  // Builds the view into root. context: texts, model (the read document), footerStart
  // (elements placed before the buttons). Returns the view's handle for the keyboard.
  function render(root, context) {
    var texts = context.texts;
    var model = context.model;
    var state = {
      chosen: model.entries.map(function (entry) { return entry.pinyin; }),
      styleType: model.styleType,
      bracketType: model.bracketType,
      sending: false
    };
    var preview = el('div', {
      class: 'preview-area' + (isLight(model.colour) ? ' on-dark' : ''), 'aria-live': 'polite'
    });
    var status = el('span', { class: 'status', role: 'alert' });
    var cancelButton = el('button', { type: 'button', class: 'button cancel', on: { click: cancel } },
      texts.get('cancel'));
    var confirmButton = el('button', { type: 'button', class: 'button primary confirm', on: { click: confirm } },
      texts.get('confirm'));
    var choices = choicesSection(state, texts, function (type) {
      state.styleType = type;
      update();
    }, function (type) {
      state.bracketType = type;
      update();
    });

    function sentItems() {
      return model.entries.map(function (entry, position) {
        return { index: entry.index, pinyin: writing.sentReading(state.chosen[position]), text: entry.text };
      });
    }

    function update() {
      var boxes = writing.writtenBoxes(sentItems(), state.styleType, state.bracketType);
      ns.dom.clear(preview);
      previewBoxes(boxes, model.colour, texts).forEach(function (box) { preview.appendChild(box); });
      Array.prototype.forEach.call(choices.querySelectorAll('.layouts .option-sample'), function (sample, position) {
        ns.dom.clear(sample);
        layoutSample(position + 1, state.bracketType).forEach(function (part) { sample.appendChild(part); });
      });
    }

    // The window is sized once to the content; switching layouts must not make the content
    // taller than that, so the preview keeps the height of its tallest layout.
    function reservePreviewHeight() {
      var chosen = state.styleType;
      var tallest = 0;
      [1, 2, 3].forEach(function (type) {
        state.styleType = type;
        update();
        tallest = Math.max(tallest, preview.offsetHeight);
      });
      state.styleType = chosen;
      update();
      preview.style.minHeight = tallest + 'px';
    }

    function setBusy(busy) {
      state.sending = busy;
      Array.prototype.forEach.call(root.querySelectorAll('select, input, button'), function (control) {
        control.disabled = busy;
      });
    }

    function confirm() {
      if (state.sending) {
        return;
      }
      setBusy(true);
      status.textContent = '';
      // The native side closes the window once it has written; only a failure comes back.
      ns.host.call('setPhoneticText', {
        styleType: state.styleType,
        bracketType: state.bracketType,
        phonetic: JSON.stringify(sentItems())
      }).catch(function () {
        setBusy(false);
        status.textContent = texts.get('hostFailed');
      });
    }

    function cancel() {
      ns.host.closeWindow();
    }

    root.appendChild(readingsSection(model, texts, function (position, reading) {
      state.chosen[position] = reading;
      update();
    }));
    root.appendChild(choices);
    root.appendChild(el('section', { class: 'preview', 'aria-labelledby': 'preview-heading' }, [
      el('h2', { id: 'preview-heading' }, texts.get('previewHeading')), preview
    ].concat(writing.mayGoOn(model.entries)
      ? [el('p', { class: 'preview-note' }, texts.get('previewLimit').replace('%1', writing.MAX_UNITS))]
      : [])));
    root.appendChild(el('div', { class: 'footer' }, context.footerStart.concat([
      el('span', { class: 'keys', 'aria-hidden': 'true' }, texts.get('keysHint')),
      status, el('span', { class: 'spacer' }), cancelButton, confirmButton
    ])));
    reservePreviewHeight();

    var first = root.querySelector('select') || root.querySelector('.layouts input:checked');
    first.focus();
    return { confirm: confirm };
  }

  // What the view shows instead when there is nothing to annotate or no host to ask.
  function renderProblem(root, context, message) {
    var closeButton = el('button', { type: 'button', class: 'button primary', on: { click: ns.host.closeWindow } },
      context.texts.get('close'));
    root.appendChild(el('div', { class: 'problem', role: 'alert' }, [
      el('div', { class: 'problem-mark', 'aria-hidden': 'true' }, '!'),
      el('p', null, message)
    ]));
    root.appendChild(el('div', { class: 'footer' }, context.footerStart.concat([
      el('span', { class: 'spacer' }), closeButton
    ])));
    closeButton.focus();
    return { confirm: ns.host.closeWindow };
  }

  ns.pinyinView = { render: render, renderProblem: renderProblem };
})(window.zphonetic = window.zphonetic || {});
