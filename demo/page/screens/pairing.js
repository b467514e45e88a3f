// The section of the settings with the values that pair a desktop with this page's session.

import { h } from '../dom.js';
import { pairingText } from '../link.js';

const kValues = [
  ['url', 'URL del progetto Supabase'],
  ['anonKey', 'Chiave anon (pubblica)'],
  ['channelKey', 'Chiave del canale'],
];
const kStatus = {
  attivo: 'Attivo',
  interrotto: 'In attesa del server…',
  altrove: 'Attivo in un’altra finestra',
  assente: 'Questo server non lo offre',
  ignoto: '…',
};

/** Copies like the user would, for browsers that keep the clipboard from scripts. */
function copyByHand(text) {
  const field = h('textarea', { class: 'nascosto', 'aria-hidden': 'true' });
  field.value = text;
  document.body.append(field);
  field.select();
  const copied = document.execCommand('copy');
  field.remove();
  return copied;
}

async function copy(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    return copyByHand(text);
  }
}

export function pairingSection({ link }) {
  const status = h('output', { id: 'collegamento' });
  const outcome = h('p', { id: 'esito-copia', class: 'nota', role: 'status' });
  const button = h(
    'button',
    {
      id: 'copia',
      type: 'button',
      class: 'secondario',
      on: {
        click: async () => {
          const copied = await copy(pairingText(link.pairing));
          button.focus();
          outcome.textContent = copied
            ? 'Copiati tutti e tre: ora incollali in Orvalle.'
            : 'La copia non è riuscita: selezionali e copiali a mano.';
        },
      },
    },
    'Copia',
  );
  const values = kValues.map(([key, label]) => ({ key, label, value: h('code', { id: `abbina-${key}` }) }));
  const list = h(
    'dl',
    { class: 'valori' },
    values.map(({ label, value }) => h('div', {}, h('dt', {}, label), h('dd', {}, value))),
  );
  const actions = h('div', { class: 'copia' }, button, outcome);
  return {
    element: h(
      'div',
      { class: 'avvisi' },
      h('h2', {}, 'Abbina Orvalle'),
      h(
        'p',
        { class: 'nota' },
        'Con questi tre valori Orvalle mostra e comanda la sessione di questa pagina anche quando gira altrove. ' +
          'Copiali, poi nel menu di Orvalle scegli «Abbina…» e «Incolla tutto».',
      ),
      list,
      actions,
      h('div', { class: 'voce' }, h('div', {}, 'Collegamento in tempo reale'), status),
    ),
    update() {
      status.textContent = kStatus[link.status];
      list.hidden = actions.hidden = link.pairing === null;
      for (const { key, value } of values) value.textContent = link.pairing?.[key] ?? '';
    },
  };
}
