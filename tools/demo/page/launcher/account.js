// Signing in: a pop-up of the login page, which hands a code to the launcher, which hands it to this page, which
// changes it for a token at the service. The launcher sees the code and the token, never the password.

const KEPT = "velkor.refresh";

let pendingState = null;
let account = null;
let listener = () => {};

async function exchange(body) {
    const answer = await fetch("/login/token", {
        method: "POST",
        headers: { "Content-Type": "application/json" },
        body: JSON.stringify(body),
    });
    if (!answer.ok)
        throw new Error("The service has refused the sign-in.");
    return answer.json();
}

function take(answer, remember) {
    account = { user: answer.user, token: answer.token };
    if (remember)
        localStorage.setItem(KEPT, answer.refresh);
    else
        localStorage.removeItem(KEPT);
    listener();
}

export const current = () => account;
export function onChange(changed) { listener = changed; }

/** Opens the login page. */
export function signIn() {
    pendingState = Array.from(crypto.getRandomValues(new Uint8Array(16)), b => b.toString(16).padStart(2, "0")).join("");
    window.open("/login/?state=" + pendingState, "velkor-login", "popup");
}

export function signOut() {
    account = null;
    localStorage.removeItem(KEPT);
    listener();
}

/** The launcher brings the code of a pop-up. One that this page has not asked for is refused. */
export async function finish(code, state, remember) {
    if (!pendingState || state !== pendingState)
        throw new Error("This sign-in was not started here.");
    pendingState = null;
    take(await exchange({ code }), remember === true);
}

/** Signs in again where the player has asked to be remembered. */
export async function resume() {
    const refresh = localStorage.getItem(KEPT);
    if (!refresh)
        return;
    try {
        take(await exchange({ refresh }), true);
    } catch {
        localStorage.removeItem(KEPT);
    }
}
