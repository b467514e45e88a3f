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
  /** Installs what `aggiornamenti-cerca` found last. */
  'aggiornamenti-installa': {};
  'aggiornamenti-automatici': { acceso?: boolean };
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
  'aggiornamenti-stato': [{}, Json<OrvalleUpdates> | ''];
  /** Empty when there was nothing to read. */
  'aggiornamenti-cerca': [{}, Json<OrvalleRelease> | ''];
  /** The path of the file; empty when nothing was written. */
  'backup': [{ nome: string; contenuto: string }, string];
  /** The greatest name of a backup; empty without one. */
  'backup-ultimo': [{}, string];
  'backup-elenco': [{}, Json<OrvalleBackup[]>];
  'attivita-stato': [{}, Json<OrvalleDiary> | ''];
  /** The local day, such as 2026-11-16. */
  'attivita-giorno': [{ giorno: string }, Json<OrvalleBlock[]>];
  'permessi-stato': [{}, Json<OrvallePermissions> | ''];
  'permessi-notifiche': [{}, OrvalleNotificationWord];
  'permessi-documenti': [{}, 'concesso' | 'negato'];
}

export type Json<T> = string & { readonly __parsed?: T };
export type OrvalleNotificationWord = 'default' | 'denied' | 'granted';
export type OrvallePermission = 'notifiche' | 'accessibilita' | 'documenti';

export interface OrvalleUpdates {
  versione: string;
  /** The only part of a version that is compared. */
  build: number;
  /** Whether the program looks for updates by itself. */
  automatico: boolean;
  /** When the last update was begun, in UTC, and to which version; both or neither. */
  ultimoQuando?: string;
  ultimaVersione?: string;
}

/** The newest release that the server offers. */
export interface OrvalleRelease {
  /** Whether it is newer than the program that runs. */
  esito: 'trovato' | 'aggiornato';
  versione: string;
  build: number;
  note?: string;
  /** Words of any kind. */
  pubblicato?: string;
}

export interface OrvalleDiary {
  acceso: boolean;
  /** Whether it may read window titles. */
  titoli: boolean;
  cartella: string;
}

/** What was in front, and from when to when, in UTC, such as 2026-11-16T00:59:33Z. The oldest comes first. */
export interface OrvalleBlock {
  app: string;
  titolo?: string;
  da: string;
  a: string;
}

/** The greatest name comes first. */
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
