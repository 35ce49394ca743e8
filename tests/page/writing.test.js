// SPDX-License-Identifier: MIT
// The writing cases (tests/data/writing-cases.json), shared with the native test of the writer:
// for every case the page can produce, the preview shows exactly the boxes, texts and bold runs
// the writer leaves on the slide, and confirming sends exactly the case's readings.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { launch, openDialog } = require('./harness');
const { entry, readingsDocument } = require('./documents');
const { cases } = require('../data/writing-cases.json');

// What the page can produce: a selection the writer has as its target, one reading per unit of
// the text in order, and a layout and brackets the page offers.
function producedByThePage(c) {
  return c.selection === 'text' &&
    [1, 2, 3].includes(c.styleType) && [1, 2, 3, 4, 5].includes(c.bracketType) &&
    c.items.length === c.text.length &&
    c.items.every(([index, text], position) => index === position && text === c.text[position]);
}

function documentOf(c) {
  return readingsDocument(c.items.map(([index, text, pinyin]) => entry(index, text, pinyin, pinyin ? [pinyin] : [])));
}

function previewOf(page) {
  return page.$$eval('.preview-area .box', (boxes) => boxes.map((box) => ({
    kind: box.getAttribute('data-kind'),
    text: box.getAttribute('data-text'),
    bold: Array.from(box.querySelectorAll('strong'), (strong) => strong.textContent)
  })));
}

describe('the writing cases, as the preview shows them', () => {
  let browser;
  before(async () => { browser = await launch(); });
  after(async () => { await browser.close(); });

  const shown = cases.filter(producedByThePage);
  it('covers every layout and every bracket kind the page offers', () => {
    assert.deepEqual([...new Set(shown.map((c) => c.styleType))].sort(), [1, 2, 3]);
    assert.deepEqual([...new Set(shown.map((c) => c.bracketType))].sort(), [1, 2, 3, 4, 5]);
  });

  for (const c of shown) {
    it(c.name, async () => {
      const dialog = await openDialog(browser, { document: documentOf(c) });
      await dialog.page.check(`input[name=layout][value="${c.styleType}"]`, { force: true });
      await dialog.page.check(`input[name=bracket][value="${c.bracketType}"]`, { force: true });
      assert.deepEqual(await previewOf(dialog.page),
        c.written.map(({ kind, text, bold }) => ({ kind, text, bold })));
      await dialog.page.click('.confirm');
      assert.deepEqual((await dialog.calls('setPhoneticText'))[0].args, {
        styleType: c.styleType,
        bracketType: c.bracketType,
        phonetic: JSON.stringify(c.items.map(([index, text, pinyin]) => ({ index, pinyin, text })))
      });
      await dialog.close();
    });
  }
});
