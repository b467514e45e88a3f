// The real server in a process of its own, and official clients to it.

import { spawn } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';

import { RealtimeClient } from '../../demo/page/vendor/realtime.js';

/** Node.js 18 has no websockets of its own; these are Debian's package, which other builds of Node.js do not search. */
export const WebSocket = createRequire(import.meta.url)('/usr/share/nodejs/ws');

export const kAnonKey = `eyJ${'a'.repeat(80)}`;
export const kChannelKey = '0123456789abcdef0123456789abcdef';

/** Starts the server for a test; it ends with the test. A `port` of 0 leaves the choice to the system. */
export async function startServer(t, { port = 0, idle = 60 } = {}) {
  const folder = mkdtempSync(join(tmpdir(), 'orvalle-realtime-'));
  const options = ['--serve-only', '--port', String(port), '--idle', String(idle), '--page', 'page'];
  const process_ = spawn(process.env.ORVALLE_DEMO_PROGRAM, options, {
    cwd: join(import.meta.dirname ?? new URL('.', import.meta.url).pathname, '../../demo'),
    env: {
      ...process.env,
      XDG_STATE_HOME: folder,
      ORVALLE_DEMO_ANON_KEY: kAnonKey,
      ORVALLE_DEMO_CHANNEL_KEY: kChannelKey,
    },
    stdio: ['ignore', 'pipe', 'inherit'],
  });
  const ended = new Promise((resolve) => process_.once('exit', (code) => resolve(code)));
  const stop = async () => {
    process_.kill('SIGTERM');
    return ended;
  };
  t.after(async () => {
    await stop();
    rmSync(folder, { recursive: true, force: true });
  });
  const [line] = await new Promise((resolve, reject) => {
    createInterface({ input: process_.stdout }).once('line', (text) => resolve([text]));
    ended.then(() => reject(new Error('the server did not start')));
  });
  const url = line.match(/http:\S+(?=\/$)/)[0];
  return { url, port: Number(new URL(url).port), stop, pid: process_.pid };
}

/** An official client, disconnected with the test. */
export function createClient(t, server, { vsn, key = kAnonKey, ...options } = {}) {
  const client = new RealtimeClient(`${server.url.replace(/^http/, 'ws')}/realtime/v1`, {
    params: { apikey: key },
    transport: WebSocket,
    // How long its timers may hold up the end of the tests.
    timeout: 5000,
    ...(vsn ? { vsn } : {}),
    ...options,
  });
  t.after(() => client.disconnect());
  return client;
}

/** Joins a channel; its broadcasts of the given events are collected in `heard`. */
export function joinChannel(
  client,
  { topic = `ov:${kChannelKey}`, events = ['state', 'cmd'], broadcast = {} } = {},
) {
  const heard = [];
  const statuses = [];
  const channel = client.channel(topic, { config: { broadcast: { self: false, ack: false, ...broadcast } } });
  for (const event of events) {
    channel.on('broadcast', { event }, (message) => heard.push([message.event, message.payload]));
  }
  const joined = new Promise((resolve, reject) => {
    channel.subscribe((status, error) => {
      statuses.push(status);
      if (status === 'SUBSCRIBED') resolve(channel);
      if (status === 'CHANNEL_ERROR' || status === 'TIMED_OUT') reject(error ?? new Error(status));
    });
  });
  joined.catch(() => {});
  return { channel, heard, statuses, joined };
}

/** A bare websocket connection that speaks the wire by hand; `next()` is the next message, `closed` the close code. */
export async function openSocket(t, server, { query = `apikey=${kAnonKey}&vsn=1.0.0` } = {}) {
  const socket = new WebSocket(`ws://localhost:${server.port}/realtime/v1/websocket?${query}`);
  t.after(() => socket.terminate());
  const messages = [];
  const waiting = [];
  socket.on('message', (data, isBinary) => {
    const message = isBinary ? data : JSON.parse(String(data));
    if (waiting.length) waiting.shift()(message);
    else messages.push(message);
  });
  const closed = new Promise((resolve) => socket.once('close', (code) => resolve(code)));
  await new Promise((resolve, reject) => {
    socket.once('open', resolve);
    socket.once('unexpected-response', (_, response) => reject(new Error(`HTTP ${response.statusCode}`)));
    socket.once('error', reject);
  });
  return {
    socket,
    messages,
    closed,
    send: (message) =>
      socket.send(
        typeof message === 'string' || Buffer.isBuffer(message) ? message : JSON.stringify(message),
      ),
    next: () =>
      messages.length ? Promise.resolve(messages.shift()) : new Promise((resolve) => waiting.push(resolve)),
  };
}

export const pause = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** Waits until the condition holds. */
export async function eventually(condition, what = String(condition), milliseconds = 10000) {
  const end = Date.now() + milliseconds;
  while (!condition()) {
    if (Date.now() > end) throw new Error(`not in time: ${what}`);
    await pause(5);
  }
}
