// The bridge between a page and the Orvalle desktop, for TypeScript. docs/bridge.md explains it.

/** What the page pushes whenever its session changes, and every few seconds while one runs. No "tipo" in it. */
export interface OrvalleState {
  running: boolean;
  isBreak: boolean;
  elapsedMin: number;
  remainingMin: number;
  plannedMin: number;
  projectTitle: string;
  tasks: { id: string; title: string; done: boolean }[];
  /** Where the session was started. */
  origin?: string | null;
}

/** Requests without an answer, with their arguments. */
export interface OrvalleOneWay {
  'notifica': { titolo?: string; corpo?: string; tag?: string };
  'tattile': { che?: string };
  'apri-preferenze': {};
  'apri-fuori': { url: string };
  'attivita-accendi': { acceso?: boolean };
  'attivita-titoli': {};
  'attivita-cartella': {};
  'permessi-apri': { quale: OrvallePermission };
  'permessi-riavvia': {};
  'apri-backup': {};
}

/** Requests with an answer: arguments, and what the answer's text is. `Json<T>` is a JSON document. */
export interface OrvalleAnswered {
  'stato-permesso': [{}, OrvalleNotificationWord];
  'permesso': [{}, OrvalleNotificationWord];
  /** The path of the file; empty when nothing was written. */
  'backup': [{ nome: string; contenuto: string }, string];
  /** The name of the newest backup; empty without one. */
  'backup-ultimo': [{}, string];
  'backup-elenco': [{}, Json<OrvalleBackup[]>];
  'attivita-stato': [{}, Json<unknown>];
  'attivita-giorno': [{ giorno: string }, Json<unknown>];
  'permessi-stato': [{}, Json<OrvallePermissions> | ''];
  'permessi-notifiche': [{}, OrvalleNotificationWord];
  'permessi-documenti': [{}, 'concesso' | 'negato'];
}

export type Json<T> = string & { readonly __parsed?: T };
export type OrvalleNotificationWord = 'default' | 'denied' | 'granted';
export type OrvallePermission = 'notifiche' | 'accessibilita' | 'documenti';

/** The newest comes first. */
export interface OrvalleBackup {
  nome: string;
  /** Bytes. */
  peso: number;
  /** UTC, such as 2026-11-16T00:59:33Z. */
  quando: string;
}

export interface OrvallePermissions {
  notifiche: 'concesso' | 'negato' | 'mai-chiesto';
  accessibilita: 'concesso' | 'negato';
  documenti: 'concesso' | 'da-provare';
  cartellaBackup: string;
  versione: string;
  firmaStabile: boolean;
  percorso: string;
}

/** The words with which the desktop calls; the argument is a task's id, minutes, a route or seconds. */
export type OrvalleCommand = 'stop' | 'plus5' | 'minus5' | 'task' | 'subito' | 'vai' | 'inattivo';

type OneWayMessage = { [K in keyof OrvalleOneWay]: { tipo: K } & OrvalleOneWay[K] }[keyof OrvalleOneWay];
type AnsweredMessage = {
  [K in keyof OrvalleAnswered]: { tipo: K; id: number } & OrvalleAnswered[K][0];
}[keyof OrvalleAnswered];

declare global {
  interface Window {
    /** Only in the desktop program, and only in the main frame. */
    readonly webkit?: {
      messageHandlers: {
        orvalle?: { postMessage(message: OrvalleState | OneWayMessage | AnsweredMessage): void };
      };
    };
    /** Defined by the page: the answer to the request with this id. */
    __orvalleRisposta?: (id: number, text: string) => void;
    /** Defined by the page: a command of the desktop. */
    __orvalleComando?: (command: OrvalleCommand, argument: string | null) => void;
  }
}
