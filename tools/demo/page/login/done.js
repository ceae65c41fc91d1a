// The launcher takes state and remember from this page's address, and closes the window.

const code = new URLSearchParams(location.hash.slice(1)).get("code");
console.log("launcher:" + JSON.stringify({ cmd: "ssoCode", code }));
