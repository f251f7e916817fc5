// The report page: its data stand in the page itself.

{
  const read = id => { const element = document.getElementById(id); return element && JSON.parse(element.textContent); };
  showReport(reportOf(read("summary"), i => read("configuration-" + i)));
}
