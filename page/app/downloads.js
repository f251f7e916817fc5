// Results and mended results, one or all of them, and the report page. What a result has lost is said beside its
// button, for nobody is asked again.

const baseName = path => path.split("/").pop();
const hasResult = configuration => !["failed", "unusable"].includes(configuration.state);

// The codes of errors that keep `convert` from writing: whoever takes the result has read of them.
const errorsOf = (report, { open }) => open.filter(code => report.kinds[code]?.severity === "error");

// The bytes that the conversion gives, or an error that says why there are none.
async function resultOf(report, configuration, words, mend) {
  const { path } = configuration, codes = errorsOf(report, configuration);
  const { files, messages } = await workers.ask("run", {
    words: ["convert", "--output", "/result", ...(mend ? ["--mend"] : []), ...(codes.length ? ["--accept", codes.join(",")] : []),
      ...words, "--", path],
    files: filesFor([path]), keep: ["/result"],
  });
  if (!files["/result"]) throw new Error(ownWords(messages));
  return files["/result"];
}

// The errors that are left when every fix is made, and how many have one.
function mendingOf(report, { index }) {
  const errors = (report.details(index)?.findings || []).filter(finding => isOpen(finding) && finding.severity === "error");
  const left = errors.filter(finding => !finding.fixes.length);
  return { mended: errors.length - left.length, left };
}

const codesOf = findings => [...new Set(findings.map(finding => finding.code))];

// Whether there is a result once it is mended, and the errors that it still has.
const canMend = (report, c) => hasResult(c) || mendingOf(report, c).mended > 0;
const codesLeft = (report, c) => c.tally[0] && canMend(report, c) ? codesOf(mendingOf(report, c).left) : [];

// Buttons for one configuration, the mended result first.
function actionsFor(report, configuration, words) {
  const box = make("div", "actions"), trouble = make("p", "error"), name = baseName(configuration.path);
  const offer = (text, mend, file, said) => box.append(make("p", "buttons", button(text, mend ? "main" : "", async () => {
    trouble.textContent = "";
    try {
      download(file, await resultOf(report, configuration, words, mend));
    } catch (error) {
      trouble.textContent = error.message;
    }
  }), said));
  const { mended, left } = mendingOf(report, configuration), errors = configuration.tally[0];
  if (mended) offer("Download the mended result", true, "mended-" + name, left.length
    ? make("span", "error", "still has " + plural(left.length, "error") + " in it: " + codesOf(left).join(", "))
    : make("span", "clear", "nothing that was found as an error is lost"));
  if (hasResult(configuration)) offer("Download the result", false, name, errors
    ? make("span", "error", "has " + plural(errors, "error") + " in it: " + errorsOf(report, configuration).join(", "))
    : make("span", "clear", configuration.tally[3] ? "loses what was agreed on" : "no errors"));
  box.append(trouble);
  return box;
}

// Those of which there is a result, as one archive; the others are told of.
async function downloadAll(report, words, mend, said) {
  const usable = report.configurations.filter(c => mend ? canMend(report, c) : hasResult(c)), files = {}, without = [];
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

// How many configurations have errors in them, and which. `codesIn` tells those of one.
function warningOf(report, codesIn) {
  const lossy = report.configurations.map(c => codesIn(c)).filter(codes => codes.length);
  const codes = [...new Set(lossy.flat())].sort().join(", ");
  return lossy.length ? make("span", "error", plural(lossy.length, "configuration") + (lossy.length === 1 ? " has" : " have") + " errors: " + codes)
    : make("span", "clear", "no errors");
}

// Buttons for all of them.
function downloadsFor(report, words, page) {
  const said = make("p", "soft");
  said.setAttribute("role", "status");
  const offer = (text, name, action, beside) => make("p", "buttons",
    button(text, name, () => action().catch(error => { said.textContent = error.message; })), beside);
  const mendable = report.configurations.some(c => c.tally[0] && mendingOf(report, c).mended);
  return [
    ...mendable ? [offer("Download all, mended", "main", () => downloadAll(report, words, true, said),
      warningOf(report, c => codesLeft(report, c)))] : [],
    offer("Download all results", "", () => downloadAll(report, words, false, said), warningOf(report, c => hasResult(c) ? errorsOf(report, c) : [])),
    offer("Download the report", "", async () => download("report.html", page(), "text/html")), said,
  ];
}
