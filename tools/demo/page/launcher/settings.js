// The settings panel: what the launcher lets a page change.

import { send, expectBare } from "./bridge.js";
import { profilesOf } from "./servers.js";

const byId = id => document.getElementById(id);

/** The settings as the panel shows them: key, label, and for a choice its values with their names. */
const FIELDS = [
    ["LauncherLanguage", "Language", [["", "English"], ["ru", "Русский"], ["fr", "Français"], ["de", "Deutsch"], ["ja", "日本語"]]],
    ["LauncherType", "Launcher version", [[0, "Release"], [1, "Beta"]]],
    ["ResManThreadCount", "Threads of the client's resource manager", [[0, "Default"], [2, "2"], [4, "4"], [8, "8"], [16, "16"]]],
    ["LauncherDownloadLimit", "Download limit", [[0, "None"], [1, "1 MB/s"], [2, "2 MB/s"], [5, "5 MB/s"], [10, "10 MB/s"], [20, "20 MB/s"], [50, "50 MB/s"]]],
    ["LauncherDownloadOnlyWithoutClients", "Download only while no client runs"],
    ["LauncherShouldDownloadEverything", "Download the full game in the background"],
    ["LauncherRunClientsWithDx9", "Run clients with DirectX 9"],
    ["LauncherRunClientsWith64Bit", "Run clients with 64 bit"],
    ["LauncherRunClientsWithLogging", "Show the clients' log in LogLens"],
    ["LauncherShouldMinimizeToTray", "Closing the window keeps the launcher in the tray"],
    ["LauncherEnableHardwareRendering", "Draw with the graphics card (from the next start)"],
    ["LauncherUseProxy", "Use the system's proxy (from the next start)"],
];

let settings = {};
let returnFocus = null;

function change(key, value) {
    send("settings", { value: JSON.stringify({ [key]: value }) });
}

function makeField([key, label, choices]) {
    const input = document.createElement(choices ? "select" : "input");
    input.dataset.key = key;
    if (choices) {
        for (const [value, name] of choices)
            input.append(new Option(name, value));
        input.onchange = () => change(key, typeof choices[0][0] === "number" ? Number(input.value) : input.value);
    } else {
        input.type = "checkbox";
        input.onchange = () => change(key, input.checked);
    }
    const row = document.createElement("label");
    row.className = "field";
    const text = document.createElement("span");
    text.textContent = label;
    row.append(...(choices ? [text, input] : [input, text]));
    return row;
}

function fill() {
    for (const input of byId("fields").querySelectorAll("[data-key]")) {
        if (input.type === "checkbox")
            input.checked = settings[input.dataset.key] === true;
        else
            input.value = settings[input.dataset.key] ?? "";
    }
    for (const input of byId("test-servers").querySelectorAll("input"))
        input.checked = (settings.LauncherTestServers ?? []).includes(input.value);
}

function fillProfiles() {
    const chosen = byId("profile-name").value;
    const names = profilesOf(byId("profile-server").value);
    byId("profile-name").replaceChildren(...names.map(name => new Option(name, name)));
    if (names.includes(chosen))
        byId("profile-name").value = chosen;
}

export function take(object) {
    settings = object;
    fill();
}

/** names: all servers by key, the first one being the main server. */
export function setServers(names) {
    const [, ...others] = [...names];
    byId("test-servers").replaceChildren(...others.map(([key, name]) => {
        const input = Object.assign(document.createElement("input"), { type: "checkbox", value: key });
        input.onchange = () => change("LauncherTestServers",
            [...byId("test-servers").querySelectorAll("input:checked")].map(box => box.value));
        const row = document.createElement("label");
        row.className = "field";
        row.append(input, name);
        return row;
    }));
    byId("profile-server").replaceChildren(...[...names].map(([key, name]) => new Option(name, key)));
    fill();
    fillProfiles();
}

export function profilesChanged(server) {
    if (server === byId("profile-server").value)
        fillProfiles();
}

export function socketOpened(port, listening) {
    byId("socket-state").textContent = listening ? `Listening on 127.0.0.1:${port}` : `Port ${port} cannot be had`;
}

function sendProfileCommand(cmd, extra) {
    const server = byId("profile-server").value;
    const name = byId("profile-name").value;
    const newName = byId("profile-new").value;
    for (const text of [server, name, newName])
        expectBare(text);
    send(cmd, extra(server, name, newName));
}

function open() {
    returnFocus = document.activeElement;
    byId("settings").hidden = false;
    byId("fields").querySelector("select, input").focus();
}

function close() {
    byId("settings").hidden = true;
    returnFocus?.focus();
}

// The keyboard stays inside while the panel is open.
function keepFocus(event) {
    if (event.key === "Escape")
        return close();
    if (event.key !== "Tab")
        return;
    const stops = [...byId("settings").querySelectorAll("button, input, select")];
    const last = event.shiftKey ? stops[0] : stops[stops.length - 1];
    if (document.activeElement === last) {
        event.preventDefault();
        (event.shiftKey ? stops[stops.length - 1] : stops[0]).focus();
    }
}

export function initialize() {
    byId("fields").append(...FIELDS.map(makeField));
    byId("open-settings").onclick = open;
    byId("close-settings").onclick = close;
    byId("settings").onkeydown = keepFocus;
    byId("open-cache").onclick = () => send("openCacheDialog");
    byId("profile-manager").onclick = () => send("openprofilesdialog");
    byId("profile-server").onchange = () => {
        send("getprofiles", { server: byId("profile-server").value });
        fillProfiles();
    };
    byId("profile-create").onclick = () => sendProfileCommand("createprofile",
        (server, name, newName) => ({ server, name: newName, inherit: { server, name } }));
    byId("profile-rename").onclick = () => sendProfileCommand("renameprofile",
        (server, name, newname) => ({ server, name, newname }));
    byId("profile-delete").onclick = () => sendProfileCommand("deleteprofile", (server, name) => ({ server, name }));
    byId("socket-open").onclick = () => send("openwebsocket", { port: Number(byId("socket-port").value) });
    byId("socket-close").onclick = () => {
        send("closewebsocket");
        byId("socket-state").textContent = "Off";
    };
}
