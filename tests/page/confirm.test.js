// SPDX-License-Identifier: MIT
// What the page sends when the user confirms, and that cancelling sends nothing.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { launch, openDialog } = require('./harness');
const { readingsDocument, MIXED_ENTRIES, NIHAO_ENTRIES } = require('./documents');

describe('confirming and cancelling', () => {
  let browser;
  before(async () => { browser = await launch(); });
  after(async () => { await browser.close(); });

  it('sends one element per entry, the layout and the brackets, with the array serialised to a string', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    await dialog.page.click('.confirm');
    const calls = await dialog.calls('setPhoneticText');
    assert.equal(calls.length, 1);
    const args = calls[0].args;
    assert.deepEqual(Object.keys(args).sort(), ['bracketType', 'phonetic', 'styleType']);
    assert.equal(args.styleType, 2);
    assert.equal(args.bracketType, 1);
    assert.equal(typeof args.phonetic, 'string', 'the native side ignores an array passed directly');
    // Every UTF-16 unit goes back, non-Chinese ones too; "  " (no reading) goes back as "".
    assert.equal(args.phonetic, JSON.stringify([
      { index: 0, pinyin: 'nǐ', text: '你' },
      { index: 1, pinyin: 'dōu', text: '都' },
      { index: 2, pinyin: 'děi', text: '得' },
      { index: 3, pinyin: '', text: 'A' },
      { index: 4, pinyin: '', text: '龥' },
      { index: 5, pinyin: 'ɡuó', text: '国' },
      { index: 6, pinyin: 'mɑ', text: '吗' },
      { index: 7, pinyin: '', text: '。' }
    ]));
    // The native side closes the window itself after writing.
    assert.equal((await dialog.log()).closes, 0);
    await dialog.close();
  });

  it('sends 都 read dū, chosen from its candidates, and 得 read děi, after the text in full-width parentheses', async () => {
    const document = readingsDocument([
      { duyin: ['dōu', 'dū'], index: 0, pinyin: 'dōu', text: '都' },
      { duyin: ['dé', 'de', 'děi'], index: 1, pinyin: 'děi', text: '得' }
    ], { color: [255, 0, 0] });
    const dialog = await openDialog(browser, { document });
    await dialog.page.selectOption('.cell[data-index="0"] select', 'dū');
    await dialog.page.check('input[name=layout][value="1"]', { force: true });
    await dialog.page.check('input[name=bracket][value="1"]', { force: true });
    assert.equal(await dialog.page.getAttribute('.box', 'data-text'), '都得（dū děi）');
    await dialog.page.click('.confirm');
    assert.deepEqual((await dialog.calls('setPhoneticText'))[0].args, {
      styleType: 1,
      bracketType: 1,
      phonetic: '[{"index":0,"pinyin":"dū","text":"都"},{"index":1,"pinyin":"děi","text":"得"}]'
    });
    await dialog.close();
  });

  it('sends the chosen candidate, layout and brackets', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES, { styleType: 2, bracketType: 1 }) });
    await dialog.page.selectOption('.cell[data-index="1"] select', 'dū');
    await dialog.page.check('input[name=layout][value="1"]', { force: true });
    await dialog.page.check('input[name=bracket][value="3"]', { force: true });
    await dialog.page.click('.confirm');
    const args = (await dialog.calls('setPhoneticText'))[0].args;
    assert.equal(args.styleType, 1);
    assert.equal(args.bracketType, 3);
    const sent = JSON.parse(args.phonetic);
    assert.deepEqual(sent[1], { index: 1, pinyin: 'dū', text: '都' });
    assert.deepEqual(sent.map((item) => item.pinyin), ['nǐ', 'dū', 'děi', '', '', 'ɡuó', 'mɑ', '']);
    await dialog.close();
  });

  it('sends the last choices unchanged when the user only confirms', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES, { styleType: 3, bracketType: 4 }) });
    await dialog.page.click('.confirm');
    const args = (await dialog.calls('setPhoneticText'))[0].args;
    assert.deepEqual(args, {
      styleType: 3,
      bracketType: 4,
      phonetic: '[{"index":0,"pinyin":"nǐ","text":"你"},{"index":1,"pinyin":"hǎo","text":"好"}]'
    });
    await dialog.close();
  });

  it('sends once however often the button is pressed', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.evaluate(() => {
      const button = document.querySelector('.confirm');
      button.click();
      button.click();
    });
    await dialog.page.keyboard.press('Enter');
    assert.equal((await dialog.calls('setPhoneticText')).length, 1);
    assert.equal(await dialog.page.$eval('.confirm', (button) => button.disabled), true);
    await dialog.close();
  });

  it('says so when the host refuses to write, and lets the user try again', async () => {
    const dialog = await openDialog(browser, { reject: ['setPhoneticText'], document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.click('.confirm');
    await dialog.page.waitForFunction(() => document.querySelector('.status').textContent !== '');
    assert.match(await dialog.page.textContent('.status'), /没有响应/);
    assert.equal(await dialog.page.$eval('.confirm', (button) => button.disabled), false);
    await dialog.page.click('.confirm');
    assert.equal((await dialog.calls('setPhoneticText')).length, 2);
    assert.equal((await dialog.log()).closes, 0);
    await dialog.close();
  });

  it('cancels with the Cancel button: the window is closed and nothing is written', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.selectOption('.cell[data-index="1"] select', 'hào');
    await dialog.page.click('.cancel');
    assert.equal((await dialog.log()).closes, 1);
    assert.deepEqual(await dialog.calls('setPhoneticText'), []);
    await dialog.close();
  });

  it('cancels with the close button of the title bar', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.click('#close');
    assert.equal((await dialog.log()).closes, 1);
    assert.deepEqual(await dialog.calls('setPhoneticText'), []);
    await dialog.close();
  });

  it('opens help through the host with an address that carries its own query', async () => {
    for (const [fragment, url] of [
      ['#/pinyin?from=home', 'https://help.zphonetic.invalid/dialog?view=pinyin&from=home'],
      ['#/pinyin?from=texttool', 'https://help.zphonetic.invalid/dialog?view=pinyin&from=texttool'],
      ['#/pinyin', 'https://help.zphonetic.invalid/dialog?view=pinyin']
    ]) {
      const dialog = await openDialog(browser, { fragment, document: readingsDocument(NIHAO_ENTRIES) });
      const before = dialog.page.url();
      await dialog.page.click('.help');
      assert.deepEqual((await dialog.log()).opened, [url]);
      assert.equal(dialog.page.url(), before, 'the dialog itself does not navigate');
      await dialog.close();
    }
  });

  it('offers no online help on the enterprise edition', async () => {
    const dialog = await openDialog(browser, { enterprise: true, document: readingsDocument(NIHAO_ENTRIES) });
    assert.equal(await dialog.page.getAttribute('html', 'data-edition'), 'enterprise');
    assert.equal(await dialog.page.locator('.help').count(), 0);
    await dialog.close();
  });
});
