// The two ways between the page and the launcher: commands that the page sends, and global functions that the
// launcher calls.

/** Sends one command. */
export function send(cmd, args = {}) {
    console.log("launcher:" + JSON.stringify({ cmd, ...args }));
}

/** Defines what the launcher calls: an object of functions by name. */
export function onCalls(functions) {
    Object.assign(globalThis, functions);
}

/**
 * "settingok" and "settingerror" bring their texts without quotes, with only letters, digits, "_" and "." left: a
 * name, which has to mean something here. This makes it mean the text.
 */
export function expectBare(text) {
    const name = text.replace(/[^\p{L}\p{N}_]/gu, "");
    if (/^[\p{L}_]/u.test(name) && !(name in globalThis))
        globalThis[name] = text;
}
