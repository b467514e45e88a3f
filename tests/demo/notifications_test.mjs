import assert from 'node:assert/strict';
import { test } from 'node:test';

import { createDesktop } from '../../demo/page/desktop.js';
import { desktopThat, lookAgain, openSettings, setStage } from './stage.mjs';

const kSection = 'avvisi';

test('a user who was never asked is asked, and then can try', async (t) => {
  const body = setStage(t);
  let word = 'default';
  const desktop = desktopThat({ 'stato-permesso': () => word, permesso: () => (word = 'granted') });
  await openSettings(body, desktop, kSection);
  assert.equal(body.find('section').text, 'Notifiche Permesso Per avvisarti quando il tempo è finito. Mai chieste Consenti… Preferenze…');
  await body.find('button', 'Consenti…').click();
  assert.equal(body.find('section').text, 'Notifiche Permesso Ti avvisano quando il tempo è finito. Consentite Prova Preferenze…');
  assert.equal(document.activeElement, body.find('button', 'Prova'));

  desktop.asked.length = 0;
  await body.find('button', 'Prova').click();
  assert.deepEqual(desktop.asked.map(({ tipo }) => tipo), ['permesso', 'notifica']);
  assert.ok(body.find('p', 'Inviata: se non appare, vedi le preferenze.'));
  await lookAgain();
  assert.ok(body.find('p', 'Inviata: se non appare, vedi le preferenze.'), 'the look again has put the hint back');
});

test('where they are not allowed the preferences are left, and a change there is seen', async (t) => {
  const body = setStage(t);
  let word = 'granted';
  const desktop = desktopThat({ 'stato-permesso': () => word, permesso: () => word });
  await openSettings(body, desktop, kSection);
  word = 'denied';
  // Not seen yet, but the trial does.
  await body.find('button', 'Prova').click();
  assert.ok(!desktop.asked.some(({ tipo }) => tipo === 'notifica'));
  const denied = 'Notifiche Permesso Il desktop non le mostra: si cambia nelle preferenze. Non consentite Preferenze…';
  assert.equal(body.find('section').text, denied);
  await body.find('button', 'Preferenze…').click();
  assert.deepEqual(desktop.asked.at(-1), { tipo: 'apri-preferenze' });
  word = 'granted';
  await lookAgain();
  assert.ok(body.find('output', 'Consentite'));

  body.replaceChildren();
  const before = desktop.asked.length;
  await lookAgain();
  await lookAgain();
  assert.equal(desktop.asked.length, before, 'a section that is gone looks again');
});

test('an ordinary browser has nothing about notifications', async (t) => {
  const body = setStage(t);
  await openSettings(body, createDesktop({}, {}), kSection);
  assert.ok(body.find('h2', 'Abbina Orvalle'));
  assert.equal(body.find('h2', 'Notifiche'), null);
});
