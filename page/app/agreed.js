// Files of agreed exceptions, which may come with the configurations or by themselves.

// Their lines are codes and patterns between "|"; a comment stands in front of those that infraconvert writes.
// Each part of the pattern ends at a line, so that thousands of empty lines are no work.
const firstOfExceptions = /^(?:[ \t\r]*(?:#[^\n]*)?\n)*[ \t]*(?:#[ \t]*code[ \t]*\||IC\d+[ \t\r]*(?:\||\n|$))/i;

const isExceptions = bytes => firstOfExceptions.test(new TextDecoder("latin1").decode(bytes.subarray(0, 65536)));

// A comma would end the name where the command takes a list of them.
const nameOfExceptions = path => path.replaceAll(",", "_");

// Takes those out of `files` that are exceptions, and returns them by name.
function takeExceptions(files) {
  const agreed = {};
  for (const [path, bytes] of Object.entries(files)) {
    if (!isExceptions(bytes)) continue;
    agreed[nameOfExceptions(path)] = bytes;
    delete files[path];
  }
  return agreed;
}

function showAgreed() {
  const names = Object.keys(given.agreed);
  at("agreed").replaceChildren(...names.length ? ["Agreed exceptions: " + names.join(", ") + " ", button("leave out", "link", () => {
    given.agreed = {};
    showAgreed();
  })] : []);
}
