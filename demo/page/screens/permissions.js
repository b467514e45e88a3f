// The settings' section on what the user and the system let the desktop do.

import { h } from '../dom.js';
import { button, row } from './rows.js';

const kLookAgainMs = 5000;
const kWords = {
  concesso: 'Concesso',
  negato: 'Negato',
  'mai-chiesto': 'Mai chiesto',
  'da-provare': 'Da provare',
};

export function permissionsSection({ desktop }) {
  if (!desktop.present) return { element: h('p', { class: 'vuoto' }, 'I permessi servono solo nell’app desktop.') };

  const states = {};
  // Whether the backup folder can be written to, as soon as it was tried: more than the desktop says by itself.
  let tried = null;
  const permission = (name, label, hint, ...buttons) => {
    states[name] = h('output', { id: `permesso-${name}` }, '…');
    return row(label, hint, states[name], ...buttons);
  };
  const facts = h('p', { class: 'nota posto' });

  async function refresh() {
    const state = (await desktop.askJson('permessi-stato')) ?? {};
    const words = { ...state, documenti: tried ?? state.documenti };
    for (const [name, output] of Object.entries(states)) output.textContent = kWords[words[name]] ?? 'Non si sa';
    const signature = state.firmaStabile ? 'firma stabile' : 'senza firma stabile';
    facts.textContent = state.versione
      ? `Versione ${state.versione}, ${signature}, in ${state.percorso}. I backup vanno in ${state.cartellaBackup}.`
      : '';
  }

  const element = h(
    'div',
    { id: 'permessi', class: 'voci' },
    permission(
      'notifiche',
      'Notifiche',
      'Per avvisarti quando il tempo è finito.',
      button('Chiedi', async () => {
        await desktop.ask('permessi-notifiche');
        await refresh();
      }),
      button('Impostazioni…', () => desktop.request('permessi-apri', { quale: 'notifiche' })),
    ),
    permission(
      'accessibilita',
      'Titoli delle finestre',
      'Per il diario delle attività.',
      button('Scegli…', () => desktop.request('permessi-apri', { quale: 'accessibilita' })),
    ),
    permission(
      'documenti',
      'Cartella dei documenti',
      'Per i backup.',
      button('Prova', async () => {
        tried = await desktop.ask('permessi-documenti');
        await refresh();
      }),
    ),
    row('App desktop', facts, button('Riavvia Orvalle', () => desktop.request('permessi-riavvia'))),
  );
  refresh();
  const timer = setInterval(() => (element.isConnected ? refresh() : clearInterval(timer)), kLookAgainMs);
  return { element };
}
