// Puts the page together: the launcher's calls go to the parts of the page, and the page's buttons to the launcher.

import * as account from "./account.js";
import { onCalls, send } from "./bridge.js";
import { invoke } from "./channel.js";
import * as servers from "./servers.js";
import * as settings from "./settings.js";

const byId = id => document.getElementById(id);
const names = new Map();
let testServers = [];
let playWhenSignedIn = null;
let isPaused = false;

const PROFILE_ERRORS = ["", "The name may hold letters, digits, blanks, “-” and “_”.", "There is a profile of this name already.",
    "There is no such profile.", "A client is running.", "The files of the profile could not be changed."];

const STARTING = "is being started…";

function showMessage(title, message) {
    const known = [...byId("errors").children].find(line => line.dataset.text === title + "\n" + message);
    if (known)
        return;
    const line = document.createElement("div");
    line.className = "error";
    line.setAttribute("role", "alert");
    line.dataset.text = title + "\n" + message;
    const text = document.createElement("p");
    const strong = document.createElement("strong");
    strong.textContent = title;
    text.append(strong, message ? " " + message : "");
    const button = document.createElement("button");
    button.textContent = "Dismiss";
    button.onclick = () => line.remove();
    line.append(text, button);
    byId("errors").append(line);
}

function served() {
    const [main] = names.keys();
    return [main, ...testServers];
}

function play(server, settingsProfile) {
    const player = account.current();
    if (!player) {
        playWhenSignedIn = { server, settingsProfile };
        account.signIn();
        return;
    }
    servers.setClient(server, player.user, STARTING);
    // The launcher is busy for a moment while it prepares the client: the screen is drawn before that.
    requestAnimationFrame(() => requestAnimationFrame(() =>
        send("launchvelkor", { server, username: player.user, token: player.token, settingsProfile })));
}

account.onChange(() => {
    const player = account.current();
    byId("user").textContent = player ? player.user : "Not signed in";
    byId("sign").textContent = player ? "Sign out" : "Sign in";
    if (!player)
        return;
    for (const server of served())
        send("settoken", { server, token: player.token });
    for (const server of served())
        send("processstatus", { server, username: player.user });
    if (playWhenSignedIn)
        play(playWhenSignedIn.server, playWhenSignedIn.settingsProfile);
    playWhenSignedIn = null;
});

onCalls({
    setVersion(version) { byId("version").textContent = "Launcher " + version; },
    addServers(list) {
        for (const { name, displayName } of list)
            names.set(name, displayName);
        servers.show(names, served());
        settings.setServers(names);
        for (const server of served())
            send("getprofiles", { server });
        account.resume();
    },
    setPlayable(server, playable) { servers.update(server, { playable }); },
    updateProgress(server, fraction, text) { servers.update(server, { fraction, text }); },
    setClientVersion(server, build) { servers.update(server, { build }); },
    showError(title, message, code) {
        servers.removeClients(STARTING);
        showMessage(title, code ? `${message} (${code})` : message);
    },
    setSettings(values) {
        testServers = values.LauncherTestServers ?? [];
        settings.take(values);
        isPaused = values.LauncherDownloadsPaused === true;
        byId("pause").hidden = values.LauncherDownloadsPaused === undefined;
        byId("pause").textContent = isPaused ? "Resume downloads" : "Pause downloads";
        if (names.size > 0)
            servers.show(names, served());
    },
    setDeviceId(id) { document.body.dataset.device = id; },
    profilelist(server, profiles) {
        servers.update(server, { profiles });
        settings.profilesChanged(server);
    },
    settingok() { byId("profile-new").value = ""; },
    settingerror(server, name, code) { showMessage(`Profile “${name}”:`, PROFILE_ERRORS[code] ?? `Error ${code}`); },
    processstatus({ server, username, isRunning, crashed }) {
        servers.setClient(server, username, isRunning ? "running" : crashed ? "has crashed" : "has ended");
        if (crashed)
            showMessage("The client has crashed.", `It was ${username || "somebody"} on ${names.get(server) ?? server}.`);
    },
    websocketopened: settings.socketOpened,
    websocketmessage(text) { showMessage("Message:", text); },
    ssoCode(code, state, remember) {
        account.finish(code, state, remember).catch(error => showMessage("Sign-in failed.", error.message));
    },
});

servers.onPlayPressed(play);
settings.initialize();
byId("sign").onclick = () => account.current() ? account.signOut() : account.signIn();
byId("pause").onclick = () => send(isPaused ? "resumedownloads" : "pausedownloads");
byId("update-note").hidden = !new URLSearchParams(location.search).has("updating");
invoke("updateBrowserBreakoutFilterURL", new URL("breakout.json", location.href).href);
send("javascriptReady");
