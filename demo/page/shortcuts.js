// The keyboard shortcuts of the desktop application's menus that have an effect on the application or the page.

const menus = [
  {
    menu: 'Orvalle',
    items: [
      ['Impostazioni…', ','],
      ['Scorciatoie', '/'],
    ],
  },
  {
    menu: 'Sessione',
    items: [
      ['Sessione da 25 minuti', 'n'],
      ['Nuova sessione…', 'N'],
      ['Ferma la sessione', '.'],
      ['Allunga di 5 minuti', ']'],
      ['Accorcia di 5 minuti', '['],
      ['Tienila sopra le altre app', 't'],
    ],
  },
  {
    menu: 'Vai',
    items: [
      ['Focus', '1'],
      ['Sprint', '2'],
      ['Calendario', '3'],
      ['Mappa', '4'],
      ['Brain', '5'],
      ['Progetti', '6'],
      ['Obiettivi', '7'],
      ['Inbox', '8'],
      ['Oggi', '9'],
    ],
  },
  {
    menu: 'Modifica',
    items: [
      ['Annulla', 'z'],
      ['Ripeti', 'Z'],
      ['Taglia', 'x'],
      ['Copia', 'c'],
      ['Incolla', 'v'],
      ['Seleziona tutto', 'a'],
    ],
  },
  { menu: 'Finestra', items: [['Apri Orvalle', 'o']] },
  { menu: 'Aiuto', items: [['Scorciatoie da tastiera', '/']] },
];

/** The menus in order, each with its items and the caps of their keys; an upper-case key needs Shift. */
export function shortcuts(isApple) {
  const caps = (key) => [
    isApple ? '⌘' : 'Ctrl',
    ...(key !== key.toLowerCase() ? [isApple ? '⇧' : 'Maiusc'] : []),
    key.toUpperCase(),
  ];
  return menus.map(({ menu, items }) => ({
    menu,
    items: items.map(([title, key]) => ({ title, keys: caps(key) })),
  }));
}
