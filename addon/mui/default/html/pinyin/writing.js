// SPDX-License-Identifier: MIT
// What the add-on writes into the slide for a set of confirmed readings. The preview is built
// from these functions only, so it shows exactly the text the native side will insert.
(function (ns) {
  'use strict';

  // Bracket pairs by bracket type. Type 3 has none (its readings are bold instead); every
  // value not listed here means no brackets either.
  var BRACKETS = {
    1: ['\uFF08', '\uFF09'],
    2: ['[', ']'],
    4: ['/', '/'],
    5: ['{', '}']
  };

  // The dialog is given at most this many UTF-16 units of the selection. A selection of that
  // many may be exactly that long or go on beyond them, and the page cannot tell which: the
  // preview shows what is written for the units it was given, and a note says what happens to
  // any that follow (written as they stand, without readings; readings after "the text" come
  // after all of it), claiming neither.
  var MAX_UNITS = 30;

  function mayGoOn(items) {
    return items.length >= MAX_UNITS;
  }

  function bracketsOf(bracketType) {
    return BRACKETS[bracketType] || ['', ''];
  }

  // Only bracket type 3 formats the written readings, and only as bold.
  function readingsAreBold(bracketType) {
    return bracketType === 3;
  }

  // A reading made only of white space stands for "Chinese character without a reading":
  // it is sent as "" so nothing is written for it.
  function sentReading(reading) {
    var text = typeof reading === 'string' ? reading : '';
    return text.trim() === '' ? '' : text;
  }

  // The readings as one group: every reading but the last followed by one space, empty
  // readings skipped together with their space, the last one appended as it is (so a text
  // ending in a non-Chinese character leaves a trailing space inside the brackets).
  function groupedReadings(items, bracketType) {
    var pair = bracketsOf(bracketType);
    var text = pair[0];
    for (var i = 0; i < items.length - 1; i += 1) {
      if (items[i].pinyin !== '') {
        text += items[i].pinyin + ' ';
      }
    }
    if (items.length > 0) {
      text += items[items.length - 1].pinyin;
    }
    return text + pair[1];
  }

  function joinedCharacters(items) {
    return items.map(function (item) { return item.text; }).join('');
  }

  // Each character followed by its own bracketed reading; an empty reading writes nothing.
  function perCharacterPieces(items, bracketType) {
    var pair = bracketsOf(bracketType);
    return items.map(function (item) {
      return {
        text: item.text,
        reading: item.pinyin === '' ? '' : pair[0] + item.pinyin + pair[1]
      };
    });
  }

  // The boxes the slide will show after writing, as runs of text with their boldness.
  // kind "selection" is the selected text (changed or not), kind "newBox" a text box the
  // add-on creates. Layouts other than 1, 2, 3 write nothing.
  function writtenBoxes(items, styleType, bracketType) {
    var bold = readingsAreBold(bracketType);
    var chars = joinedCharacters(items);
    if (styleType === 1) {
      return [{ kind: 'selection', changed: true, runs: [
        { text: chars, bold: false },
        { text: groupedReadings(items, bracketType), bold: bold }
      ] }];
    }
    if (styleType === 2) {
      var runs = [];
      perCharacterPieces(items, bracketType).forEach(function (piece) {
        runs.push({ text: piece.text, bold: false });
        if (piece.reading !== '') {
          runs.push({ text: piece.reading, bold: bold });
        }
      });
      return [{ kind: 'selection', changed: true, runs: runs }];
    }
    if (styleType === 3) {
      return [
        { kind: 'newBox', changed: true, runs: [{ text: groupedReadings(items, bracketType), bold: bold }] },
        { kind: 'selection', changed: false, runs: [{ text: chars, bold: false }] }
      ];
    }
    return [];
  }

  ns.writing = {
    MAX_UNITS: MAX_UNITS,
    mayGoOn: mayGoOn,
    readingsAreBold: readingsAreBold,
    sentReading: sentReading,
    groupedReadings: groupedReadings,
    writtenBoxes: writtenBoxes
  };
})(window.zphonetic = window.zphonetic || {});
