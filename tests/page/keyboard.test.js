// SPDX-License-Identifier: MIT
// The dialog works with the keyboard alone: Tab order, arrows, Enter confirms, Escape cancels.
'use strict';

const { describe, it, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { launch, openDialog } = require('./harness');
const { readingsDocument, MIXED_ENTRIES, NIHAO_ENTRIES } = require('./documents');

// A short name for the focused element, to compare Tab orders.
function focused(page) {
  return page.evaluate(() => {
    const node = document.activeElement;
    if (node.tagName === 'SELECT') return 'select ' + node.getAttribute('data-index');
    if (node.tagName === 'INPUT') return node.name + ' ' + node.value;
    return node.className;
  });
}

describe('keyboard', () => {
  let browser;
  before(async () => { browser = await launch(); });
  after(async () => { await browser.close(); });

  it('starts on the first reading selector and tabs through the choices to the buttons', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    const order = [await focused(dialog.page)];
    for (let step = 0; step < 7; step += 1) {
      await dialog.page.keyboard.press('Tab');
      order.push(await focused(dialog.page));
    }
    assert.deepEqual(order, [
      'select 1', 'select 2', 'select 6', 'layout 2', 'bracket 1', 'help', 'button cancel', 'button primary confirm'
    ]);
    await dialog.close();
  });

  it('starts on the layout when there is no polyphone', async () => {
    const dialog = await openDialog(browser, {
      document: readingsDocument([NIHAO_ENTRIES[0]], { styleType: 1, bracketType: 5 })
    });
    assert.equal(await focused(dialog.page), 'layout 1');
    await dialog.close();
  });

  it('picks a reading, a layout and brackets with keys and confirms with Enter', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    await dialog.page.keyboard.press('ArrowDown');
    assert.equal(await dialog.page.$eval('.cell[data-index="1"] select', (select) => select.value), 'dū');
    await dialog.page.keyboard.press('Tab');
    await dialog.page.keyboard.press('Tab');
    await dialog.page.keyboard.press('Tab');
    await dialog.page.keyboard.press('ArrowLeft');
    await dialog.page.keyboard.press('Tab');
    await dialog.page.keyboard.press('ArrowRight');
    assert.equal(await focused(dialog.page), 'bracket 2');
    assert.equal(await dialog.page.getAttribute('.box', 'data-text'), '你都得A龥国吗。[nǐ dū děi ɡuó mɑ ]');
    await dialog.page.keyboard.press('Enter');
    const args = (await dialog.calls('setPhoneticText'))[0].args;
    assert.equal(args.styleType, 1);
    assert.equal(args.bracketType, 2);
    assert.equal(JSON.parse(args.phonetic)[1].pinyin, 'dū');
    await dialog.close();
  });

  it('confirms with Enter on a reading selector instead of opening its list', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(MIXED_ENTRIES) });
    assert.equal(await focused(dialog.page), 'select 1');
    await dialog.page.keyboard.press('Enter');
    assert.equal((await dialog.calls('setPhoneticText')).length, 1);
    await dialog.close();
  });

  it('cancels with Escape', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.keyboard.press('Escape');
    assert.equal((await dialog.log()).closes, 1);
    assert.deepEqual(await dialog.calls('setPhoneticText'), []);
    await dialog.close();
  });

  it('cancels with Enter on the Cancel button, and confirms with Space on OK', async () => {
    const cancelled = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await cancelled.page.focus('.cancel');
    await cancelled.page.keyboard.press('Enter');
    assert.equal((await cancelled.log()).closes, 1);
    assert.deepEqual(await cancelled.calls('setPhoneticText'), []);
    await cancelled.close();
    const confirmed = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await confirmed.page.focus('.confirm');
    await confirmed.page.keyboard.press('Space');
    assert.equal((await confirmed.calls('setPhoneticText')).length, 1);
    await confirmed.close();
  });

  it('shows where the focus is', async () => {
    const dialog = await openDialog(browser, { document: readingsDocument(NIHAO_ENTRIES) });
    await dialog.page.keyboard.press('Tab');
    const ring = await dialog.page.$eval('input[name=layout]:focus + .option-body', (body) => getComputedStyle(body).boxShadow);
    assert.match(ring, /rgb\(47, 111, 237\)/);
    await dialog.close();
  });
});
