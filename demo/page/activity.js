// The desktop's diary of what was in front: reading a day of it and adding it up. Pure functions.

/** A local date as the diary names its days: "2026-03-02". */
export function dayKey(date) {
  const two = (n) => String(n).padStart(2, '0');
  return `${String(date.getFullYear()).padStart(4, '0')}-${two(date.getMonth() + 1)}-${two(date.getDate())}`;
}

/** The day so many days from this one; days are counted on the calendar, whatever their length. */
export function dayFrom(date, days) {
  return new Date(date.getFullYear(), date.getMonth(), date.getDate() + days, 12);
}

/** The blocks in the desktop's answer, with times in milliseconds; none where it is no list of blocks. */
export function readDay(text) {
  let list;
  try {
    list = JSON.parse(text);
  } catch {
    return [];
  }
  if (!Array.isArray(list)) return [];
  return list
    .filter((block) => typeof block?.app === 'string')
    .map(({ app, titolo, da, a }) => ({ app, title: titolo ?? null, from: Date.parse(da), to: Date.parse(a) }))
    .filter(({ from, to }) => to >= from);
}

/** The time spent in each application, longest first. */
export function totals(blocks) {
  const times = new Map();
  for (const { app, from, to } of blocks) times.set(app, (times.get(app) ?? 0) + to - from);
  return [...times]
    .map(([app, time]) => ({ app, time }))
    .sort((one, other) => other.time - one.time || one.app.localeCompare(other.app, 'it'));
}

/** Neighbouring blocks of one application as one stretch, with the titles it showed. */
export function stretches(blocks) {
  const kLongestGap = 60000;
  const found = [];
  for (const { app, title, from, to } of blocks) {
    const last = found.at(-1);
    if (last && last.app === app && from - last.to <= kLongestGap) {
      last.to = to;
      last.time += to - from;
      if (title && !last.titles.includes(title)) last.titles.push(title);
    } else {
      found.push({ app, titles: title ? [title] : [], from, to, time: to - from });
    }
  }
  return found;
}
