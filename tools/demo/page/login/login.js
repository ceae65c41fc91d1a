// Asks the service for a code, and goes on to the page that hands it to the launcher.

const byId = id => document.getElementById(id);
const state = new URLSearchParams(location.search).get("state") ?? "";

byId("login").onsubmit = async event => {
    event.preventDefault();
    byId("problem").textContent = "";
    const answer = await fetch("authorize", {
        method: "POST",
        headers: { "Content-Type": "application/json" },
        body: JSON.stringify({ user: byId("name").value, password: byId("password").value }),
    }).catch(() => null);
    if (!answer?.ok) {
        byId("problem").textContent = answer?.status === 403 ? "The name or the password is wrong." : "The service cannot be reached.";
        byId("password").select();
        return;
    }
    const { code } = await answer.json();
    const query = new URLSearchParams({ state, remember: byId("remember").checked });
    location.replace(`done.html?${query}#code=${code}`);
};
byId("name").focus();
