// The web channel: the launcher's object "settings", spoken to in the toolkit's own protocol.

const INIT = 3;
const INVOKE = 6;
const RESPONSE = 10;

/** Calls a method of the launcher's object, where there is a launcher. */
export function invoke(method, ...args) {
    const transport = globalThis.qt?.webChannelTransport;
    if (!transport)
        return;
    transport.onmessage = event => {
        const message = JSON.parse(event.data);
        if (message.type !== RESPONSE || message.id !== 1)
            return;
        const entry = message.data.settings?.methods.find(([name]) => name === method);
        if (entry)
            transport.send(JSON.stringify({ type: INVOKE, id: 2, object: "settings", method: entry[1], args }));
    };
    transport.send(JSON.stringify({ type: INIT, id: 1 }));
}
