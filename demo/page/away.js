// The notice that the user has been away while a session goes on.

import { h } from './dom.js';
import { inMinutes } from './format.js';

/** `stop` ends the session. */
export function createAwayNotice(container, stop) {
  const hide = () => container.replaceChildren();
  const text = h('p', {});
  const card = h(
    'div',
    { class: 'cartellino', on: { keydown: (event) => event.key === 'Escape' && hide() } },
    text,
    h(
      'div',
      {},
      h('button', { id: 'avviso-ferma', type: 'button', class: 'secondario', on: { click: stop } }, 'Ferma'),
      h('button', { id: 'avviso-chiudi', type: 'button', class: 'piano', on: { click: hide } }, 'Continua'),
    ),
  );

  return {
    /** The desktop repeats its report while the user stays away; whoever dismisses the notice is back. */
    show(seconds) {
      text.textContent = `Nessuna attività per ${inMinutes(Math.floor(seconds / 60))}. La sessione continua.`;
      if (!card.isConnected) container.append(card);
    },
    hide,
  };
}
