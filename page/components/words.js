// Which words of a removed and an added line differ. Lines come as words and the blanks between them.

const wordsOf = text => text.match(/\s+|[^\s]+/g) || [];

// For two lines, their words with a mark at those that the other does not have: the longest common
// sequence stays unmarked.
function markedWords(before, after) {
  const a = wordsOf(before), b = wordsOf(after);
  if (a.length * b.length > 10000) return [a.map(word => [word, true]), b.map(word => [word, true])];
  const length = Array.from({ length: a.length + 1 }, () => new Uint16Array(b.length + 1));
  for (let i = a.length - 1; i >= 0; i--)
    for (let j = b.length - 1; j >= 0; j--)
      length[i][j] = a[i] === b[j] ? length[i + 1][j + 1] + 1 : Math.max(length[i + 1][j], length[i][j + 1]);
  const left = [], right = [];
  let i = 0, j = 0;
  while (i < a.length || j < b.length) {
    if (i < a.length && j < b.length && a[i] === b[j]) { left.push([a[i++], false]); right.push([b[j++], false]); }
    else if (j >= b.length || (i < a.length && length[i + 1][j] >= length[i][j + 1])) left.push([a[i++], true]);
    else right.push([b[j++], true]);
  }
  return [left, right];
}
