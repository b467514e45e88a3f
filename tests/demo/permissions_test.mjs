import assert from 'node:assert/strict';
import { test } from 'node:test';

import { permissionsSection } from '../../demo/page/screens/permissions.js';
import { desktopThat, lookAgain, setStage, settled } from './stage.mjs';

const kState = {
  notifiche: 'concesso',
  accessibilita: 'negato',
  documenti: 'da-provare',
  cartellaBackup: '/c',
  versione: '1.0',
  firmaStabile: false,
  percorso: '/o',
};

test('what the user tried stays, whatever the desktop says of itself meanwhile', async (t) => {
  const body = setStage(t);
  let word = 'negato';
  let state = kState;
  const desktop = desktopThat({ 'permessi-stato': () => state, 'permessi-documenti': () => word });
  const { element } = permissionsSection({ desktop });
  body.append(element);
  const shown = () => ['Da provare', 'Concesso', 'Negato'].filter((text) => row.find('output', text)).join();
  await settled();
  const row = element.children[2];
  assert.equal(shown(), 'Da provare');

  const looked = () => desktop.asked.filter(({ tipo }) => tipo === 'permessi-stato').length;
  for (word of ['negato', 'concesso']) {
    await row.find('button', 'Prova').click();
    const before = looked();
    await lookAgain();
    assert.equal(looked(), before + 1);
    assert.equal(shown(), word === 'negato' ? 'Negato' : 'Concesso');
  }

  // Everything else is as the desktop says.
  assert.equal(element.children[0].find('output').text, 'Concesso');
  state = { ...kState, notifiche: 'negato' };
  await lookAgain();
  assert.equal(element.children[0].find('output').text, 'Negato');
});
