// Screens that do not exist yet: they say so, and what they will hold.

import { h, icon } from '../dom.js';

export function plainScreen(title, symbol, promise) {
  return () => ({
    title,
    element: h(
      'div',
      { class: 'pagina in-arrivo' },
      h('div', { class: 'simbolo' }, icon(symbol)),
      h('h1', { tabindex: -1 }, title),
      h('p', {}, promise),
      h('p', { class: 'nota' }, 'Questa schermata non è ancora pronta.'),
    ),
    update() {},
  });
}
