// The settings' section on backups: one now, those that are there, their folder.

import { backUp, readBackups } from '../backup.js';
import { h } from '../dom.js';
import { counted, dayName, timeOfDay } from '../format.js';

function size(bytes) {
  return bytes < 1000 ? counted(bytes, 'byte', 'byte') : `${Math.round(bytes / 1000).toLocaleString('it')} kB`;
}

export function backupSection({ desktop }) {
  if (!desktop.present) return { element: h('p', { class: 'vuoto' }, 'I backup ci sono solo nell’app desktop.') };

  let state = null;
  const outcome = h('p', { class: 'nota', role: 'status' }, 'Uno al giorno si fa da solo; restano gli ultimi 30.');
  const list = h('ul', { class: 'righe', role: 'list', 'aria-label': 'I backup' });
  const now = h(
    'button',
    {
      type: 'button',
      id: 'backup-ora',
      class: 'secondario',
      on: {
        click: async () => {
          const done = await backUp(desktop, state);
          outcome.textContent = done ? 'Backup fatto.' : 'Il backup non è riuscito: controlla la cartella.';
          await refresh();
        },
      },
    },
    'Fai un backup',
  );
  const open = h(
    'button',
    { type: 'button', class: 'secondario', on: { click: () => desktop.request('apri-backup') } },
    'Apri la cartella',
  );

  async function refresh() {
    const backups = readBackups(await desktop.ask('backup-elenco'));
    open.disabled = backups.length === 0;
    list.replaceChildren(
      ...backups.map(({ nome, peso, quando }) => {
        const date = new Date(quando);
        return h(
          'li',
          {},
          h('span', { class: 'nome' }, nome),
          h('small', {}, `${dayName(date)}, ${timeOfDay(date)} · ${size(peso)}`),
        );
      }),
    );
  }

  refresh();
  return {
    element: h(
      'div',
      { id: 'backup' },
      h('div', { class: 'voci' }, h('div', { class: 'voce' }, h('div', {}, 'Backup', outcome), now, open)),
      list,
    ),
    update(latest) {
      state = latest;
    },
  };
}
