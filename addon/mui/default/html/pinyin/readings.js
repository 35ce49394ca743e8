// SPDX-License-Identifier: MIT
// Turns the readings document of getPhoneticText into the page's own model, trusting
// nothing: a malformed member gives a safe value instead of an exception.
(function (ns) {
  'use strict';

  // The page's own choices when the document says -1 ("never chosen") or anything unknown:
  // each reading right after its character, in full-width parentheses, the form Chinese
  // teaching material uses most.
  var DEFAULT_STYLE_TYPE = 2;
  var DEFAULT_BRACKET_TYPE = 1;
  var STYLE_TYPES = [1, 2, 3];
  var BRACKET_TYPES = [1, 2, 3, 4, 5];

  function choice(value, allowed, fallback) {
    var number = Number(value);
    return allowed.indexOf(number) >= 0 ? number : fallback;
  }

  function colourOf(value) {
    if (!Array.isArray(value) || value.length !== 3) {
      return 'rgb(0, 0, 0)';
    }
    var parts = value.map(function (part) {
      var number = Math.round(Number(part));
      return isFinite(number) ? Math.min(255, Math.max(0, number)) : 0;
    });
    return 'rgb(' + parts.join(', ') + ')';
  }

  // The readings offered for an entry: its reading in context first when the candidates do
  // not hold it (a tone change such as yí for 一), then the candidates in their order. An
  // entry without a reading of its own but with candidates offers "" (write nothing) first.
  function optionsOf(pinyin, duyin) {
    var options = [];
    var candidates = Array.isArray(duyin) ? duyin : [];
    if (pinyin.trim() === '') {
      options.push('');
    } else if (candidates.indexOf(pinyin) < 0) {
      options.push(pinyin);
    }
    candidates.forEach(function (candidate) {
      if (typeof candidate === 'string' && candidate.trim() !== '' && options.indexOf(candidate) < 0) {
        options.push(candidate);
      }
    });
    return options.length === 1 && options[0] === '' ? [] : options;
  }

  function entryOf(element, position) {
    var pinyin = typeof element.pinyin === 'string' ? element.pinyin : '';
    return {
      index: Number.isInteger(element.index) ? element.index : position,
      text: typeof element.text === 'string' ? element.text : '',
      pinyin: pinyin,
      options: optionsOf(pinyin, element.duyin)
    };
  }

  // Null when there is nothing to annotate (no result, or no entry at all).
  function readDocument(result) {
    if (!result || typeof result !== 'object' || !result.data || typeof result.data !== 'object') {
      return null;
    }
    var phonetic = Array.isArray(result.data.phonetic) ? result.data.phonetic : [];
    var entries = [];
    phonetic.forEach(function (element, position) {
      if (element && typeof element === 'object' && !Array.isArray(element)) {
        entries.push(entryOf(element, position));
      }
    });
    if (entries.length === 0) {
      return null;
    }
    return {
      entries: entries,
      colour: colourOf(result.data.color),
      styleType: choice(result.styleType, STYLE_TYPES, DEFAULT_STYLE_TYPE),
      bracketType: choice(result.bracketType, BRACKET_TYPES, DEFAULT_BRACKET_TYPE)
    };
  }

  // Display cells: a surrogate pair is one character on screen although the document (and
  // what is sent back) keeps one entry per UTF-16 unit.
  function cellsOf(entries) {
    var cells = [];
    for (var i = 0; i < entries.length; i += 1) {
      var high = entries[i].text;
      var next = entries[i + 1];
      if (next && /^[\uD800-\uDBFF]$/.test(high) && /^[\uDC00-\uDFFF]$/.test(next.text)) {
        cells.push({ text: high + next.text, positions: [i, i + 1] });
        i += 1;
      } else {
        cells.push({ text: high, positions: [i] });
      }
    }
    return cells;
  }

  ns.readings = {
    readDocument: readDocument,
    cellsOf: cellsOf
  };
})(window.zphonetic = window.zphonetic || {});
