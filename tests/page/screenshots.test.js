// SPDX-License-Identifier: MIT
// Screenshots of both views at the window's first size (627x669) and at the size the page
// asks for, written to $ZPHONETIC_SCREENSHOT_DIR (default build/screenshots/) for a person
// to look at. The checks here are the ones a screenshot can fail on: size, fit, title bar.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { launch, openDialog, screenshotDir, WINDOW } = require('./harness');
const { readingsDocument, MIXED_ENTRIES, NIHAO_ENTRIES, POEM } = require('./documents');

// Width and height from a PNG's header.
function pngSize(file) {
  const bytes = fs.readFileSync(file);
  assert.equal(bytes.toString('latin1', 1, 4), 'PNG');
  return { width: bytes.readUInt32BE(16), height: bytes.readUInt32BE(20) };
}

const SHOTS = [
  { name: 'pinyin-zh', options: { document: readingsDocument(MIXED_ENTRIES, { color: [192, 0, 0] }) } },
  { name: 'pinyin-en', options: { locale: 'en-US', document: readingsDocument(NIHAO_ENTRIES, { styleType: 1, bracketType: 2 }) } },
  { name: 'pinyin-30-units', options: { document: readingsDocument(POEM, { styleType: 3, bracketType: 3 }) } },
  { name: 'pinyin-white-text', options: { document: readingsDocument(NIHAO_ENTRIES, { color: [255, 255, 255] }) } },
  { name: 'pinyin-nothing-to-annotate', options: { document: null } },
  { name: 'guide-zh', options: { fragment: '#/guide?from=home' } },
  { name: 'guide-en', options: { fragment: '#/guide?from=texttool', locale: 'en-US' } }
];

describe('screenshots', () => {
  let browser;
  let dir;
  before(async () => {
    browser = await launch();
    dir = screenshotDir();
  });
  after(async () => { await browser.close(); });

  for (const shot of SHOTS) {
    it(`${shot.name}: at 627x669, then fitted to the size the page asks for`, async () => {
      const dialog = await openDialog(browser, shot.options);
      const first = path.join(dir, `${shot.name}-627x669.png`);
      await dialog.page.screenshot({ path: first });
      assert.deepEqual(pngSize(first), WINDOW);
      const bar = await dialog.page.locator('.titlebar').boundingBox();
      assert.deepEqual([bar.y, bar.height], [0, 40]);

      // The native side makes the window one pixel larger than asked in each direction.
      const asked = (await dialog.calls('changeSize')).map((call) => call.args);
      assert.equal(asked.length, 1);
      const fitted = { width: asked[0].width + 1, height: asked[0].height + 1 };
      await dialog.page.setViewportSize(fitted);
      const overflow = await dialog.page.evaluate(() => ({
        x: document.documentElement.scrollWidth - window.innerWidth,
        y: document.documentElement.scrollHeight - window.innerHeight
      }));
      assert.deepEqual(overflow, { x: 0, y: 0 }, 'everything fits in the resized window');
      const second = path.join(dir, `${shot.name}-fitted.png`);
      await dialog.page.screenshot({ path: second });
      assert.deepEqual(pngSize(second), fitted);
      await dialog.close();
    });
  }
});
