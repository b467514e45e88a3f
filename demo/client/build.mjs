#!/usr/bin/env node
// Makes demo/page/vendor/realtime.js, the official realtime client in one file, and the licences beside it, from
// exactly the packages in package-lock.json:
//
//     demo/client/build.mjs            writes both files
//     demo/client/build.mjs --check    compares instead; 1: they differ, 77: the packages cannot be fetched here
//
// Both files are kept in the repository, so that building the program needs neither npm nor a network: Debian's npm
// cannot be installed beside another Node.js.

import { execFileSync } from 'node:child_process';
import {
  copyFileSync,
  existsSync,
  mkdtempSync,
  mkdirSync,
  readFileSync,
  rmSync,
  writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const kCannotFetch = 77;
const here = dirname(fileURLToPath(import.meta.url));
const vendor = join(here, '../page/vendor');

function install(folder) {
  for (const name of ['package.json', 'package-lock.json', 'entry.js'])
    copyFileSync(join(here, name), join(folder, name));
  try {
    const patience = ['--fetch-retries=1', '--fetch-retry-maxtimeout=2000', '--fetch-timeout=20000'];
    execFileSync('npm', ['ci', '--ignore-scripts', '--no-audit', '--no-fund', ...patience], {
      cwd: folder,
      stdio: 'pipe',
    });
  } catch (error) {
    const said = error.code === 'ENOENT' ? 'There is no npm.' : String(error.stderr);
    const isOurs = /EINTEGRITY|EUSAGE|ETARGET|E404/.test(said);
    console.error(`${said}\nThe packages could not be fetched.`);
    process.exit(isOurs ? 1 : kCannotFetch);
  }
}

function bundle(folder, version) {
  const banner = `/* @supabase/realtime-js ${version} in one file, made by demo/client/build.mjs. Licences: realtime-licences.txt */`;
  execFileSync(
    join(folder, 'node_modules/.bin/esbuild'),
    [
      'entry.js',
      '--bundle',
      '--format=esm',
      '--target=es2020',
      '--charset=utf8',
      `--banner:js=${banner}`,
      '--outfile=out.js',
    ],
    { cwd: folder, stdio: 'pipe' },
  );
  return readFileSync(join(folder, 'out.js'), 'utf8');
}

/** The licence texts of everything that the client needs, whether or not the bundler found it used. */
function licences(folder, packages) {
  return packages
    .map(({ path, name, version, license }) => {
      const file = ['LICENSE', 'LICENSE.md', 'LICENSE.txt']
        .map((leaf) => join(folder, path, leaf))
        .find(existsSync);
      if (!file) throw new Error(`${name} has no licence text`);
      return `${name} ${version} (${license})\n\n${readFileSync(file, 'utf8').replaceAll('\r\n', '\n').trim()}\n`;
    })
    .join(`\n${'-'.repeat(80)}\n\n`);
}

function make() {
  const folder = mkdtempSync(join(tmpdir(), 'orvalle-client-'));
  process.on('exit', () => rmSync(folder, { recursive: true, force: true }));
  install(folder);
  const lock = JSON.parse(readFileSync(join(folder, 'package-lock.json'), 'utf8'));
  const packages = Object.entries(lock.packages)
    .filter(([path, { dev }]) => path && !dev)
    .map(([path, { version, license }]) => ({
      path,
      name: path.replace(/^.*node_modules\//, ''),
      version,
      license,
    }));
  const client = packages.find(({ name }) => name === '@supabase/realtime-js');
  return {
    'realtime.js': bundle(folder, client.version),
    'realtime-licences.txt': licences(folder, packages),
  };
}

const files = Object.entries(make());
if (process.argv[2] === '--check') {
  for (const [name, content] of files) {
    if (readFileSync(join(vendor, name), 'utf8') === content) continue;
    console.error(`demo/page/vendor/${name} is not what demo/client/package-lock.json makes.`);
    process.exitCode = 1;
  }
} else {
  mkdirSync(vendor, { recursive: true });
  for (const [name, content] of files) writeFileSync(join(vendor, name), content);
}
