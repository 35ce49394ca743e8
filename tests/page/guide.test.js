// SPDX-License-Identifier: MIT
// The "#/guide" view: why nothing can be annotated yet, with a drawing, and a way out.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { launch, openDialog } = require('./harness');
const { readingsDocument, NIHAO_ENTRIES } = require('./documents');

describe('guide view', () => {
  let browser;
  before(async () => { browser = await launch(); });
  after(async () => { await browser.close(); });

  it('explains with a drawing that text must be selected first', async () => {
    const dialog = await openDialog(browser, { fragment: '#/guide?from=home' });
    assert.equal(await dialog.page.getAttribute('html', 'data-rendered'), 'guide');
    assert.equal(await dialog.page.textContent('.guide-heading'), '请先选中文字');
    assert.equal(await dialog.page.textContent('.guide-note'), '一次最多标注 30 个字。');
    assert.deepEqual(await dialog.page.$$eval('.guide-steps li', (items) => items.map((item) => item.textContent)), [
      '1在幻灯片的文本框里拖动鼠标，选中要标注的文字。', '2再点击“拼音标注”，就可以挑选读音和样式。'
    ]);
    const picture = await dialog.page.$eval('svg.guide-picture', (svg) => ({
      texts: Array.from(svg.querySelectorAll('text'), (text) => text.textContent),
      width: svg.getBoundingClientRect().width,
      label: svg.getAttribute('aria-label')
    }));
    assert.deepEqual(picture.texts, ['拼音标注', '2', '春眠不觉晓', '1']);
    assert.equal(picture.width, 578);
    assert.match(picture.label, /选中/);
    await dialog.close();
  });

  it('asks only for the edition and the window size, never for readings', async () => {
    const dialog = await openDialog(browser, { fragment: '#/guide?from=texttool' });
    const methods = (await dialog.calls()).map((call) => call.method);
    assert.deepEqual(methods, ['onGetIsEnterprise', 'changeSize']);
    const size = (await dialog.calls('changeSize'))[0].args;
    assert.equal(size.width, 626);
    assert.ok(Number.isInteger(size.height) && size.height > 300 && size.height <= 669);
    await dialog.page.click('.help');
    assert.deepEqual((await dialog.log()).opened, ['https://help.zphonetic.invalid/dialog?view=guide&from=texttool']);
    await dialog.close();
  });

  it('closes with its button, with Enter and with Escape', async () => {
    for (const close of [
      (page) => page.click('.guide-close'),
      (page) => page.keyboard.press('Enter'),
      (page) => page.keyboard.press('Escape'),
      (page) => page.click('#close')
    ]) {
      const dialog = await openDialog(browser, { fragment: '#/guide' });
      assert.equal(await dialog.page.evaluate(() => document.activeElement.className), 'button primary guide-close');
      await close(dialog.page);
      assert.equal((await dialog.log()).closes, 1);
      assert.deepEqual(await dialog.calls('setPhoneticText'), []);
      await dialog.close();
    }
  });

  it('speaks English when the page language is English', async () => {
    const dialog = await openDialog(browser, { fragment: '#/guide', locale: 'en-GB' });
    assert.equal(await dialog.page.textContent('.guide-heading'), 'Select some text first');
    assert.equal(await dialog.page.textContent('.guide-close'), 'Got it');
    assert.equal(await dialog.page.textContent('.guide-note'), 'Up to 30 characters are annotated at a time.');
    await dialog.close();
  });

  it('follows a change of view in the fragment', async () => {
    const dialog = await openDialog(browser, { fragment: '#/guide?from=home', document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.evaluate(() => { window.location.hash = '#/pinyin?from=home'; });
    await dialog.page.waitForSelector('html[data-rendered="pinyin"]');
    assert.equal(await dialog.page.locator('.guide').count(), 0);
    assert.equal(await dialog.page.locator('.cell').count(), 2);
    await dialog.close();
  });
});
