// Stands in for the browser's document and for the desktop, as far as the screens of the settings need them.

import { createDesktop } from '../../demo/page/desktop.js';
import { createScreen } from '../../demo/page/screens/settings.js';

class Node {
  hidden = false;
  parent = null;
  children = [];
  attributes = {};
  #listeners = {};

  constructor(name) {
    this.name = name;
  }
  setAttribute(name, value) {
    if (name === 'hidden') this.hidden = true;
    else this.attributes[name] = String(value);
  }
  addEventListener(event, listener) {
    this.#listeners[event] = listener;
  }
  append(...nodes) {
    for (const node of nodes) {
      if (node instanceof Node) node.parent = this;
      this.children.push(node);
    }
  }
  replaceChildren(...nodes) {
    for (const child of this.children) if (child instanceof Node) child.parent = null;
    this.children = [];
    this.append(...nodes);
  }
  get textContent() {
    return this.children.map((child) => child.textContent ?? child).join('');
  }
  set textContent(text) {
    this.replaceChildren(String(text));
  }
  get isConnected() {
    return this.parent?.isConnected ?? this === document.body;
  }
  get #shown() {
    return this.children.filter((child) => !child.hidden);
  }

  /** What can be read, with a space between any two texts. */
  get text() {
    return this.#shown
      .map((child) => child.text ?? child)
      .filter(Boolean)
      .join(' ');
  }
  /** The first that can be seen of this kind, with this text if one is given. */
  find(name, text) {
    for (const child of this.#shown) {
      if (child.name === name && (text === undefined || child.text === text)) return child;
      const found = child.find?.(name, text);
      if (found) return found;
    }
    return null;
  }
  focus() {
    document.activeElement = this;
  }
  async click() {
    await this.#listeners.click();
  }
}

const intervals = new Map();

/** Gives a test a document of its own, on a server that answers nothing; what is appended to its body is on the screen. */
export function setStage(t) {
  const { document, location } = globalThis;
  globalThis.document = { createElement: (name) => new Node(name), body: new Node('body') };
  globalThis.location = new URL('http://localhost:4717/settings');
  intervals.clear();
  t.mock.method(globalThis, 'setInterval', (callback) => {
    const timer = Symbol('timer');
    intervals.set(timer, callback);
    return timer;
  });
  t.mock.method(globalThis, 'clearInterval', (timer) => intervals.delete(timer));
  t.mock.method(globalThis, 'fetch', () => Promise.reject(new TypeError('no server')));
  t.after(() => Object.assign(globalThis, { document, location }));
  return globalThis.document.body;
}

/**
 * A desktop that gives these answers, each a text or a function of the request; a document is written as JSON. `asked`
 * has all that was requested, each without its id.
 */
export function desktopThat(answers) {
  const asked = [];
  const postMessage = ({ id, ...request }) => {
    asked.push(request);
    const found = answers[request.tipo];
    const answer = typeof found === 'function' ? found(request) : found;
    if (id === undefined || answer === undefined) return;
    const text = typeof answer === 'string' ? answer : JSON.stringify(answer);
    queueMicrotask(() => window.__orvalleRisposta(id, text));
  };
  const window = { webkit: { messageHandlers: { orvalle: { postMessage } } } };
  return Object.assign(createDesktop(window, {}), { asked });
}

/** The settings' screen with one of its sections, on the screen. */
export function openSettings(body, desktop, section = '') {
  const screen = createScreen({
    actions: {},
    desktop,
    link: { status: 'ignoto', pairing: null },
    route: { query: new URLSearchParams({ sezione: section }) },
  });
  screen.update({ breakMin: 5 });
  body.replaceChildren(screen.element);
  return settled();
}

/** The time of every timer that repeats has come once. */
export function lookAgain() {
  for (const callback of [...intervals.values()]) callback();
  return settled();
}

/** Lets everything that waits for an answer have it. */
export const settled = () => new Promise((resolve) => setImmediate(resolve));
