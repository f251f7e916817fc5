// What is asked about the configurations: the form, and its words for the verbs of the command.

const question = () => at("question").elements;

const stopsAsked = () => question().via.value.split(",").map(text => text.trim()).filter(Boolean);

// The words of the form for a verb. `plan` knows no exceptions, and where secrets are hidden the page shows nothing
// that a plan quotes; `convert` hides nothing.
function wordsFor(verb) {
  const { from, to, service, mask } = question(), words = [];
  if (from.value.trim()) words.push("--from", from.value.trim());
  for (const release of stopsAsked()) words.push("--via", release);
  words.push("--to", to.value.trim());
  if (service.value) words.push("--service", service.value);
  if (mask.checked && verb === "audit") words.push("--mask");
  if (verb !== "plan") for (const name of Object.keys(given.agreed)) words.push("--accept", "@" + name);
  return words;
}

// The release that most of the configurations say has written them, where nobody asks about another.
function usualRelease() {
  const counts = new Map();
  for (const { release } of given.found.configurations) if (release) counts.set(release, (counts.get(release) || 0) + 1);
  return [...counts].sort((a, b) => b[1] - a[1])[0]?.[0];
}

// What stands in the form when there are new configurations.
function prepareQuestion() {
  const { configurations } = given.found, form = question();
  const untold = configurations.some(({ release }) => release === null);
  form.from.value = "";
  form.from.required = untold;
  form.from.placeholder = untold ? "for example 4.1(2)" : "as their version lines say";
  if (configurations.length) form[untold ? "from" : "to"].focus();
}

// What there is to choose from.
function fillQuestion({ border_releases, services }) {
  const option = (value, text) => { const element = make("option", "", text); element.value = value; return element; };
  at("known-releases").append(...border_releases.map(release => option(release, "")));
  question().service.append(...services.map(({ name, title }) => option(name, title)));
}
