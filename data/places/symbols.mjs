// SPDX-License-Identifier: MIT
// Packs short texts with a table of up to 255 symbols of one to eight bytes each: every code stands for a symbol, the
// code 255 for the one byte that follows it. Each text can be unpacked by itself.

const escape = 255;
const longestSymbol = 8;
const rounds = 6;

function lookup(symbols) {
  const byFirst = Array.from({ length: 256 }, () => []);
  symbols.forEach((symbol, code) => byFirst[symbol.charCodeAt(0)].push([symbol, code]));
  for (const list of byFirst) list.sort((a, b) => b[0].length - a[0].length);
  return byFirst;
}

function* parse(byFirst, text) {
  for (let at = 0; at < text.length; ) {
    const found = byFirst[text.charCodeAt(at)].find(([symbol]) => text.startsWith(symbol, at));
    yield found ?? [text[at], escape];
    at += found ? found[0].length : 1;
  }
}

/// The symbols that save most on `texts`, which are byte strings.
export function trainSymbols(texts) {
  let symbols = [];
  for (let round = 0; round < rounds; ++round) {
    const byFirst = lookup(symbols);
    const gains = new Map();
    const count = (symbol) => gains.set(symbol, (gains.get(symbol) ?? 0) + symbol.length);
    for (const text of texts) {
      let previous = '';
      for (const [symbol] of parse(byFirst, text)) {
        count(symbol);
        if (symbol.length > 1) count(symbol[0]);
        if (previous && previous.length + symbol.length <= longestSymbol) count(previous + symbol);
        previous = symbol;
      }
    }
    symbols = [...gains]
      .sort((a, b) => b[1] - a[1] || (a[0] < b[0] ? -1 : 1))
      .slice(0, escape)
      .map(([symbol]) => symbol);
  }
  return symbols;
}

/// A function that packs one byte string into an array of bytes.
export function packer(symbols) {
  const byFirst = lookup(symbols);
  return (text) => {
    const bytes = [];
    for (const [symbol, code] of parse(byFirst, text)) {
      bytes.push(code);
      if (code === escape) bytes.push(symbol.charCodeAt(0));
    }
    return bytes;
  };
}

/// The table as the file has it: for each symbol its length and eight bytes.
export function symbolTable(symbols) {
  const table = Buffer.alloc(escape * (longestSymbol + 1));
  for (let code = 0; code < escape; ++code) {
    const symbol = symbols[code] ?? '?';
    table[code * (longestSymbol + 1)] = symbol.length;
    table.write(symbol, code * (longestSymbol + 1) + 1, 'latin1');
  }
  return table;
}
