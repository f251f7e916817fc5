// Building elements. Texts of a configuration only ever become text nodes, so that nothing in them is markup.

// An element with a class and what stands in it: texts, elements, or nothing for what is empty.
function make(tag, name, ...content) {
  const element = document.createElement(tag);
  if (name) element.className = name;
  element.append(...content.filter(part => part !== undefined && part !== null && part !== "").map(
    part => part instanceof Node ? part : visible(String(part))));
  return element;
}

// Control bytes as pictures of themselves, so that what a line holds can be seen.
function visible(text) {
  return text.replace(/[\u0000-\u0008\u000b-\u001f\u007f]/g,
    c => c === "\u007f" ? "\u2421" : String.fromCharCode(0x2400 + c.charCodeAt(0)));
}

const routeText = releases => releases.join(" \u2192 ");

// The two releases of a step, of a route with several.
const stepText = hop => "step " + routeText(hop);

const plural = (number, word) => number + " " + word + (number === 1 ? "" : "s");

// A button that does something, under a name that a screen reader says.
function button(text, name, action) {
  const element = make("button", name, text);
  element.type = "button";
  element.addEventListener("click", action);
  return element;
}

// A table with a head; rows are lists of cells, each a text or an element.
function table(name, titles, rows) {
  const element = make("table", name), head = make("tr");
  for (const title of titles) {
    const cell = make("th", "", title);
    cell.scope = "col";
    head.append(cell);
  }
  const body = make("tbody");
  for (const row of rows) body.append(make("tr", "", ...row.map((cell, i) => labelled(make("td", "", cell), titles[i]))));
  element.append(make("thead", "", head), body);
  return element;
}

// Where there is room for one column only, a cell says what it is by itself.
function labelled(cell, title) {
  cell.dataset.title = title;
  return cell;
}

// Copies a text and says so on the button. Where the browser does not allow it, the text is selected.
async function copy(text, from) {
  const said = from.textContent;
  try {
    await navigator.clipboard.writeText(text);
    from.textContent = "copied";
  } catch {
    from.textContent = copyBySelection(text) ? "copied" : "select and copy by hand";
  }
  setTimeout(() => { from.textContent = said; }, 2000);
}

// A page from a file has no clipboard in some browsers; this older way still works there.
function copyBySelection(text) {
  const area = make("textarea", "");
  area.value = text;
  document.body.append(area);
  area.select();
  const done = document.execCommand("copy");
  area.remove();
  return done;
}
