// What the sections of the settings are made of.

import { h } from '../dom.js';

/** A row: what it is about, a text or an element that says more, and what shows or changes it. */
export function row(label, hint, ...controls) {
  const note = typeof hint === 'string' ? h('p', { class: 'nota' }, hint) : hint;
  return h('div', { class: 'voce' }, h('div', {}, label, note), controls);
}

export function button(text, click, kind = 'secondario') {
  return h('button', { type: 'button', class: kind, on: { click } }, text);
}

/** A part of a section, with a heading of its own. */
export function part(id, title, ...content) {
  const heading = h('h2', { id: `${id}-titolo` }, title);
  return h('section', { id, class: 'parte', 'aria-labelledby': heading.id }, heading, content);
}
