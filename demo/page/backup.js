// Backups through the desktop: their names, what is in them, and when the next one is due.

import { emptyState } from './session.js';

const two = (number) => String(number).padStart(2, '0');

/** The local day, which names of backups begin with. */
function day(date) {
  return `${String(date.getFullYear()).padStart(4, '0')}-${two(date.getMonth() + 1)}-${two(date.getDate())}`;
}

/** A name for a backup made now; the desktop keeps the greatest ones, so that names must sort by time. */
export function backupName(date) {
  return `${day(date)}-${two(date.getHours())}${two(date.getMinutes())}${two(date.getSeconds())}.json`;
}

/** What a backup holds: the whole state. */
export function backupText(state) {
  return JSON.stringify({ formato: 1, stato: state }, null, 2);
}

/** Whether no backup, by its name, is of this day. Names of other programs' making say nothing. */
export function isDue(backups, date) {
  return !backups.some(({ nome }) => nome.startsWith(day(date)));
}

/** The list that the desktop gives; empty when it is not one. */
export function readBackups(text) {
  try {
    const list = JSON.parse(text);
    return Array.isArray(list) ? list : [];
  } catch {
    return [];
  }
}

/** Writes a backup; whether that went well. */
export async function backUp(desktop, state, date = new Date()) {
  const path = await desktop.ask('backup', { nome: backupName(date), contenuto: backupText(state) });
  return Boolean(path);
}

/** Writes the first backup of the day; none of a state that is still as it was at first. */
export async function backUpDaily(desktop, state, date = new Date()) {
  // The thirtieth of these would push out the last backup that holds something.
  if (JSON.stringify(state) === JSON.stringify(emptyState())) return false;
  const list = await desktop.ask('backup-elenco');
  return list !== null && isDue(readBackups(list), date) && backUp(desktop, state, date);
}
