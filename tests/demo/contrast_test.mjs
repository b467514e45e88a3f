import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';

const kStyle = readFileSync(new URL('../../demo/page/style/base.css', import.meta.url), 'utf8');
// What is read, and what must at least be seen, by the guidelines for accessible web content.
const kText = 4.5;
const kShape = 3;

/** The colours that a part of the style sheet names. */
function palette(text) {
  return Object.fromEntries([...text.matchAll(/--([\w-]+): (#[0-9a-f]{3,6});/g)].map(([, name, colour]) => [name, colour]));
}

function luminance(colour) {
  const digits = colour.length === 4 ? [...colour.slice(1)].map((digit) => digit + digit).join('') : colour.slice(1);
  const [red, green, blue] = [0, 2, 4].map((at) => {
    const part = parseInt(digits.slice(at, at + 2), 16) / 255;
    return part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
  });
  return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

function contrast(one, other) {
  const [lighter, darker] = [luminance(one), luminance(other)].sort((a, b) => b - a);
  return (lighter + 0.05) / (darker + 0.05);
}

test('contrast is measured as the guidelines say', () => {
  assert.equal(contrast('#fff', '#000000'), 21);
  assert.ok(Math.abs(contrast('#777777', '#ffffff') - 4.478) < 0.001);
});

const [light, others] = kStyle.split('@media (prefers-color-scheme: dark)');
const palettes = { light: palette(light), dark: { ...palette(light), ...palette(others) } };
for (const [name, colours] of Object.entries(palettes)) {
  test(`texts and marks stand out from what they are on: ${name}`, () => {
    for (const ground of ['carta', 'foglio', 'foglio-2', 'accento-tenue']) {
      for (const ink of ['inchiostro', 'inchiostro-2', 'accento', 'pausa', 'oltre']) {
        assert.ok(contrast(colours[ink], colours[ground]) >= kText, `${ink} on ${ground}`);
      }
      assert.ok(contrast(colours['bordo-scelta'], colours[ground]) >= kShape, `bordo-scelta on ${ground}`);
    }
    assert.ok(contrast(colours['su-accento'], colours.accento) >= kText);
    assert.ok(contrast(colours['su-accento'], colours['accento-vivo']) >= kText);
  });
}
