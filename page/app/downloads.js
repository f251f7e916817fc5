// Results and mended results, one or all of them, and the report page.

const baseName = path => path.split("/").pop();

// The codes of errors that keep `convert` from writing: whoever takes the result has seen them.
const agreedTo = (report, configuration) => configuration.codes.filter(code => report.kinds[code]?.severity === "error");

// The bytes that the conversion gives, or an error that says why there are none.
async function resultOf(report, configuration, words, mend) {
  const { path } = configuration, codes = agreedTo(report, configuration);
  const { files, messages } = await workers.ask("run", {
    words: ["convert", "--output", "/result", ...(mend ? ["--mend"] : []), ...(codes.length ? ["--accept", codes.join(",")] : []),
      ...words.filter(word => word !== "--mask"), "--", path],
    files: { [path]: given.files[path] }, keep: ["/result"],
  });
  if (!files["/result"]) throw new Error(ownWords(messages));
  return files["/result"];
}

// Buttons for one configuration.
function actionsFor(report, configuration, words) {
  const line = make("p", "buttons"), trouble = make("span", "error");
  const offer = (text, mend, name) => button(text, "", async () => {
    trouble.textContent = "";
    try {
      download(name + baseName(configuration.path), await resultOf(report, configuration, words, mend));
    } catch (error) {
      trouble.textContent = error.message;
    }
  });
  line.append(offer("Download the result", false, ""));
  if (configuration.tally[0]) line.append(offer("Download the mended result", true, "mended-"));
  line.append(trouble);
  return line;
}

// Those of which there is a result, as one archive; the others are told of.
async function downloadAll(report, words, mend, said) {
  const usable = report.configurations.filter(c => !["failed", "unusable"].includes(c.state)), files = {}, without = [];
  let done = 0;
  await Promise.all(usable.map(async c => {
    try {
      files[c.path] = await resultOf(report, c, words, mend);
    } catch (error) {
      without.push(c.path);
    }
    said.textContent = ++done + " of " + usable.length;
  }));
  const left = report.configurations.length - usable.length + without.length;
  const { bytes } = await workers.ask("zip", { files });
  download(mend ? "mended.zip" : "results.zip", bytes, "application/zip");
  said.textContent = plural(Object.keys(files).length, "configuration") + (left ? "; without a result: " + left : "");
}

// Buttons for all of them.
function downloadsFor(report, words, page) {
  const said = make("span", "soft");
  said.setAttribute("role", "status");
  const offer = (text, action) => button(text, "", () => action().catch(error => { said.textContent = error.message; }));
  return [
    offer("Download all results", () => downloadAll(report, words, false, said)),
    offer("Download all, mended", () => downloadAll(report, words, true, said)),
    button("Download the report", "", () => download("report.html", page(), "text/html")), said,
  ];
}
