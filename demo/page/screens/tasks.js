// The list of tasks beside the countdown: add, tick, remove.

import { h, icon } from '../dom.js';
import { kLongestTitle } from '../session.js';

function createRow(task, actions) {
  const check = h('input', { type: 'checkbox', on: { change: () => actions.toggleTask(task.id) } });
  const remove = h(
    'button',
    {
      type: 'button',
      class: 'togli',
      title: 'Togli',
      'aria-label': `Togli «${task.title}»`,
      on: { click: () => actions.removeTask(task.id) },
    },
    icon('togli'),
  );
  const element = h('li', { 'data-task': task.id }, h('label', {}, check, h('span', {}, task.title)), remove);
  return {
    element,
    check,
    update({ done }) {
      check.checked = done;
    },
  };
}

export function createTasks(actions) {
  const rows = new Map();
  const count = h('p', { class: 'conto' });
  const input = h('input', {
    id: 'nuovo-task',
    type: 'text',
    maxlength: kLongestTitle,
    autocomplete: 'off',
    placeholder: 'Aggiungi una task',
    'aria-label': 'Nuova task',
  });
  const form = h(
    'form',
    {
      class: 'aggiungi',
      on: {
        submit: (event) => {
          event.preventDefault();
          actions.addTask(input.value);
          input.value = '';
          input.focus();
        },
      },
    },
    input,
    h(
      'button',
      { type: 'submit', class: 'tondo', title: 'Aggiungi', 'aria-label': 'Aggiungi la task' },
      icon('piu'),
    ),
  );
  const list = h('ul', { id: 'task', class: 'lista-task', role: 'list', 'aria-label': 'Task' });
  const empty = h('p', { class: 'vuoto' }, 'Ancora nessuna task. Scrivi qui sopra la prima.');

  // Whoever removes a row with the keyboard goes on from its neighbour, not from the top of the page.
  function focusNear(index) {
    const left = [...rows.values()];
    (left[Math.min(index, left.length - 1)]?.check ?? input).focus();
  }

  return {
    element: h(
      'section',
      { class: 'task', 'aria-labelledby': 'titolo-task' },
      h('header', {}, h('h2', { id: 'titolo-task' }, 'Task della roadmap'), count),
      form,
      list,
      empty,
    ),
    update(tasks) {
      const ids = new Set(tasks.map(({ id }) => id));
      let focusedAt = -1;
      for (const [index, [id, row]] of [...rows].entries()) {
        if (ids.has(id)) continue;
        if (row.element.contains(document.activeElement)) focusedAt = index;
        row.element.remove();
        rows.delete(id);
      }
      for (const [index, task] of tasks.entries()) {
        if (!rows.has(task.id)) rows.set(task.id, createRow(task, actions));
        const row = rows.get(task.id);
        row.update(task);
        if (list.children[index] !== row.element)
          list.insertBefore(row.element, list.children[index] ?? null);
      }
      if (focusedAt >= 0) focusNear(focusedAt);
      const done = tasks.filter((task) => task.done).length;
      count.textContent = tasks.length ? `${done} di ${tasks.length}` : '';
      count.setAttribute('aria-label', `${done} fatte su ${tasks.length}`);
      empty.hidden = tasks.length > 0;
      list.hidden = tasks.length === 0;
    },
  };
}
