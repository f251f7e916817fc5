// The files that are dropped or chosen, with the path that each has below what was dropped.

async function filesOfDrop(transfer) {
  const dropped = [...transfer.items].filter(item => item.kind === "file").map(item => [item.webkitGetAsEntry?.(), item.getAsFile()]);
  const found = [];
  for (const [entry, file] of dropped) {
    if (entry) await collect(entry, found);
    else if (file) found.push({ path: file.name, file }); // a browser that does not tell folders from files
  }
  return found;
}

async function collect(entry, found) {
  if (entry.isFile) {
    const file = await new Promise((done, failed) => entry.file(done, failed));
    found.push({ path: entry.fullPath.replace(/^\/+/, ""), file });
    return;
  }
  const reader = entry.createReader();
  for (;;) { // a reader gives a hundred at a time
    const some = await new Promise((done, failed) => reader.readEntries(done, failed));
    if (!some.length) return;
    for (const each of some) await collect(each, found);
  }
}

const filesOfInput = input => [...input.files].map(file => ({ path: file.webkitRelativePath || file.name, file }));

// What a path may not lead to within an instance: outside.
const harmless = path => path.split("/").filter(part => part && part !== "." && part !== "..").join("/");

// Their bytes, by path; a name that comes twice gets a number.
async function readAll(found) {
  const files = {};
  for (const { path, file } of found) {
    let name = harmless(path);
    for (let i = 2; name in files; i++) name = harmless(path) + " (" + i + ")";
    files[name] = new Uint8Array(await file.arrayBuffer());
  }
  return files;
}

// Hands a file to the browser's downloads.
function download(name, bytes, type = "application/octet-stream") {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([bytes], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 60000);
}
