// The list of servers: one card each, kept up to date by the launcher's calls.

const list = document.getElementById("servers");
const cards = new Map();
const wanted = new Map(); // what has been told about a server before it was listed
let onPlay = () => {};
let frame = 0;

function element(tag, properties = {}, ...children) {
    const node = Object.assign(document.createElement(tag), properties);
    node.append(...children);
    return node;
}

function stateOf(key) {
    if (!wanted.has(key))
        wanted.set(key, { playable: false, fraction: 0, text: "Not checked yet", build: "", clients: new Map(), profiles: ["Default"] });
    return wanted.get(key);
}

// However many calls arrive, the screen is drawn once for each of its frames.
function redraw() {
    frame ||= requestAnimationFrame(() => {
        frame = 0;
        for (const [key, card] of cards)
            draw(card, stateOf(key));
    });
}

function draw(card, state) {
    card.build.textContent = state.build ? "build " + state.build : "";
    if (card.text.textContent !== state.text)
        card.text.textContent = state.text;
    card.fill.style.transform = `scaleX(${state.fraction})`;
    card.bar.setAttribute("aria-valuenow", Math.floor(state.fraction * 100));
    card.play.disabled = !state.playable;
    const names = state.profiles.join("\n");
    if (card.names !== names) {
        const chosen = card.profile.value;
        card.names = names;
        card.profile.replaceChildren(...state.profiles.map(name => element("option", { textContent: name })));
        if (state.profiles.includes(chosen))
            card.profile.value = chosen;
    }
    const clients = [...state.clients].map(([user, text]) => `${user}\n${text}`).join("\n\n");
    if (card.shownClients !== clients) {
        card.shownClients = clients;
        card.clients.replaceChildren(...[...state.clients].map(([user, text]) =>
            element("li", {}, `${user || "A client"}: ${text}`)));
    }
}

function makeCard(key, displayName) {
    const card = { names: "", shownClients: "" };
    card.build = element("span", { className: "build quiet" });
    card.profile = element("select");
    card.profile.setAttribute("aria-label", `Profile for ${displayName}`);
    card.play = element("button", { className: "primary play", textContent: "Play", disabled: true,
        onclick: () => onPlay(key, card.profile.value) });
    card.play.setAttribute("aria-label", `Play on ${displayName}`);
    card.text = element("span", { className: "text quiet" });
    card.fill = element("div");
    card.bar = element("div", { className: "bar" }, card.fill);
    card.bar.setAttribute("role", "progressbar");
    card.bar.setAttribute("aria-label", `Progress of ${displayName}`);
    card.bar.setAttribute("aria-valuemin", 0);
    card.bar.setAttribute("aria-valuemax", 100);
    card.clients = element("ul", { className: "clients" });
    card.root = element("article", { className: "server" },
        element("h2", {}, displayName, card.build), card.profile, card.play,
        element("div", { className: "state" }, card.text, card.bar, card.clients));
    card.root.dataset.server = key;
    return card;
}

export function onPlayPressed(play) { onPlay = play; }

/** Which servers there are: keys with their names, and which of them are served. */
export function show(names, served) {
    const keys = [...names.keys()].filter(key => served.includes(key));
    for (const key of keys) {
        if (!cards.has(key))
            cards.set(key, makeCard(key, names.get(key)));
    }
    for (const key of [...cards.keys()]) {
        if (!keys.includes(key))
            cards.delete(key);
    }
    list.replaceChildren(...keys.map(key => cards.get(key).root));
    redraw();
}

export function update(key, changes) {
    Object.assign(stateOf(key), changes);
    redraw();
}

export function setClient(key, user, text) {
    stateOf(key).clients.set(user, text);
    redraw();
}

/** Forgets the clients of which the text is all that is known. */
export function removeClients(text) {
    for (const { clients } of wanted.values()) {
        for (const [user, known] of clients) {
            if (known === text)
                clients.delete(user);
        }
    }
    redraw();
}

export const profilesOf = key => stateOf(key).profiles;
