// Makes elements. Texts are always inserted as text, never as markup.

const kSvg = 'http://www.w3.org/2000/svg';

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (name === 'on') {
      for (const [event, listener] of Object.entries(value)) element.addEventListener(event, listener);
    } else if (value === true) {
      element.setAttribute(name, '');
    } else if (value !== false && value !== null && value !== undefined) {
      element.setAttribute(name, value);
    }
  }
  element.append(...children.flat().filter((child) => child !== null && child !== undefined));
  return element;
}

/** An HTML element; `on` among the attributes holds its listeners. */
export function h(name, attributes = {}, ...children) {
  return fill(document.createElement(name), attributes, children);
}

export function svg(name, attributes = {}, ...children) {
  return fill(document.createElementNS(kSvg, name), attributes, children);
}

/** One of the symbols drawn in index.html. */
export function icon(name) {
  return svg('svg', { class: 'icona', 'aria-hidden': 'true' }, svg('use', { href: `#i-${name}` }));
}
