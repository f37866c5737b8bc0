// SPDX-License-Identifier: MIT
// The bytes of a gazetteer; docs/places.md describes the format.
import { packer, symbolTable, trainSymbols } from './symbols.mjs';

export const limits = {
  places: 1 << 18,
  regions: 1 << 12,
  nameWords: 8,
  alternatives: 48,
  alternativeWords: 8,
};

const headerSize = 32;
const textBlock = 16;
const populationBlock = 64;
const wordBlock = 64;
const mask = (1n << 64n) - 1n;

const bytesOf = (text) => Buffer.from(text, 'utf8').toString('latin1');

function varint(value) {
  const bytes = [];
  for (; value >= 0x80; value = Math.floor(value / 0x80)) bytes.push((value % 0x80) | 0x80);
  return [...bytes, value];
}

function words32(values) {
  const buffer = Buffer.alloc(values.length * 4);
  values.forEach((value, index) => buffer.writeUInt32LE(value, index * 4));
  return buffer;
}

/// Four interleaved FNV-1a sums of the 64-bit words, joined by a fifth.
function checksum(bytes) {
  const prime = 0x100000001b3n;
  const lanes = [0n, 1n, 2n, 3n].map((lane) => 0xcbf29ce484222325n + lane);
  for (let at = 0, lane = 0; at < bytes.length; at += 8, lane = (lane + 1) % 4)
    lanes[lane] = ((lanes[lane] ^ bytes.readBigUInt64LE(at)) * prime) & mask;
  return lanes.reduce((sum, lane) => ((sum ^ lane) * prime) & mask, 0xcbf29ce484222325n);
}

function positions(places) {
  const buffer = Buffer.alloc(places.length * 8);
  places.forEach((place, index) => {
    const latitude = BigInt(Math.round((place.latitude + 90) * 1e5));
    const longitude = BigInt(Math.round((place.longitude + 180) * 1e5));
    buffer.writeBigUInt64LE(latitude | (longitude << 25n) | (BigInt(place.region) << 51n), index * 8);
  });
  return buffer;
}

function populations(places) {
  const index = [];
  const deltas = [];
  places.forEach((place, at) => {
    if (at % populationBlock === 0) index.push(place.population, deltas.length);
    else deltas.push(...varint(places[at - 1].population - place.population));
  });
  return [words32(index), Buffer.from(deltas)];
}

function texts(places) {
  const sample = (list, count) => list.filter((_, index) => index % Math.ceil(list.length / count) === 0);
  const names = places.map((place) => bytesOf(place.name));
  const alternatives = places.map((place) => bytesOf(place.alternatives.join('\n')));
  const nameSymbols = trainSymbols(sample(names, 40_000));
  const alternativeSymbols = trainSymbols(sample(alternatives.filter(Boolean), 8_000));
  const packName = packer(nameSymbols);
  const packAlternatives = packer(alternativeSymbols);
  const index = [];
  const bytes = [];
  places.forEach((_, at) => {
    if (at % textBlock === 0) index.push(bytes.length);
    const name = packName(names[at]);
    const others = packAlternatives(alternatives[at]);
    bytes.push(...varint(name.length * 2 + (others.length ? 1 : 0)), ...name);
    if (others.length) bytes.push(...varint(others.length), ...others);
  });
  return [words32(index), Buffer.from(bytes), symbolTable(nameSymbols), symbolTable(alternativeSymbols)];
}

/// Every beginning of a word in every name of every place, in the order of the text from there on.
function wordStarts(places, fold) {
  const starts = [];
  const add = (text, id, ordinal) => starts.push([bytesOf(text), id * 64 + ordinal]);
  const inner = (text) => [...text.matchAll(/ /g)].map((space) => text.slice(space.index + 1));
  places.forEach((place, id) => {
    const name = fold(place.name);
    add(name, id, 0);
    inner(name).slice(0, limits.nameWords - 1).forEach((text, index) => add(text, id, index + 1));
    place.alternatives.forEach((text, index) => add(text, id, limits.nameWords + index));
    place.alternatives
      .flatMap(inner)
      .slice(0, limits.alternativeWords)
      .forEach((text, index) => add(text, id, limits.nameWords + limits.alternatives + index));
  });
  starts.sort((a, b) => (a[0] < b[0] ? -1 : a[0] > b[0] ? 1 : a[1] - b[1]));
  const buffer = Buffer.alloc(starts.length * 3);
  const best = Buffer.alloc(Math.ceil(starts.length / wordBlock) * 3, 0xff);
  starts.forEach(([, value], index) => {
    const block = Math.floor(index / wordBlock) * 3;
    buffer.writeUIntLE(value, index * 3, 3);
    best.writeUIntLE(Math.min(best.readUIntLE(block, 3), Math.floor(value / 64)), block, 3);
  });
  // The beginning of each block's first text, so that most of a search needs no text to be unpacked.
  const heads = starts
    .filter((_, index) => index % wordBlock === 0)
    .map(([text]) => Buffer.from(text.slice(0, 8).padEnd(8, '\0'), 'latin1'));
  return [buffer, best, Buffer.concat(heads)];
}

function regionsAndCountries(regions, countries, fold) {
  const strings = [];
  let length = 0;
  const add = (text) => {
    const bytes = Buffer.from(text, 'utf8');
    strings.push(bytes);
    length += bytes.length;
    return [length - bytes.length, bytes.length];
  };
  const record = (size, text, fill) => {
    const buffer = Buffer.alloc(size);
    const [offset, bytes] = add(text);
    buffer.writeUInt32LE(offset, 0);
    buffer.writeUInt16LE(bytes, 4);
    fill(buffer);
    return buffer;
  };
  let words = '';
  const regionTable = regions.map((region) =>
    record(12, region.name, (buffer) => {
      const country = countries[region.country];
      buffer.writeUInt16LE(region.country, 6);
      buffer.writeUInt32LE(Buffer.byteLength(words), 8);
      words += ` ${[region.name, region.abbreviation, country.name, country.code].map(fold).filter(Boolean).join(' ')}\n`;
    }),
  );
  const countryTable = countries.map((country) =>
    record(8, country.name, (buffer) => buffer.write(country.code, 6, 'latin1')),
  );
  return [Buffer.concat(regionTable), Buffer.concat(countryTable), Buffer.concat(strings), Buffer.from(words)];
}

function foldingTable(characters, foldCharacter) {
  const entries = [...characters]
    .filter((character) => character.codePointAt(0) >= 0x80 && foldCharacter(character) !== character)
    .sort((a, b) => a.codePointAt(0) - b.codePointAt(0));
  return Buffer.concat(
    entries.map((character) => {
      const buffer = Buffer.alloc(16);
      const folded = Buffer.from(foldCharacter(character), 'utf8');
      if (folded.length > 11) throw new Error(`${character} folds to more than a table entry holds`);
      buffer.writeUInt32LE(character.codePointAt(0), 0);
      buffer[4] = folded.length;
      folded.copy(buffer, 5);
      return buffer;
    }),
  );
}

/// The whole file. Places come most populous first; `characters` are all that are folded.
export function gazetteerFile({ places, regions, countries, characters, fold, foldCharacter }) {
  if (places.length > limits.places || regions.length > limits.regions) throw new Error('too many places or regions');
  const sections = [
    positions(places),
    ...populations(places),
    ...texts(places),
    ...wordStarts(places, fold),
    ...regionsAndCountries(regions, countries, fold),
    foldingTable(characters, foldCharacter),
  ];
  const padded = (size) => Math.ceil(size / 8) * 8;
  const table = Buffer.alloc(padded(sections.length * 8));
  let offset = headerSize + table.length;
  sections.forEach((section, index) => {
    table.writeUInt32LE(offset, index * 8);
    table.writeUInt32LE(section.length, index * 8 + 4);
    offset += padded(section.length);
  });
  const body = Buffer.concat([
    table,
    ...sections.map((section) => Buffer.concat([section, Buffer.alloc(padded(section.length) - section.length)])),
  ]);
  const header = Buffer.alloc(headerSize);
  header.write('CORVPLAC', 0, 'latin1');
  header.writeUInt32LE(1, 8);
  header.writeUInt32LE(sections.length, 12);
  header.writeUInt32LE(headerSize + body.length, 16);
  header.writeBigUInt64LE(checksum(body), 24);
  return { file: Buffer.concat([header, body]), sizes: sections.map((section) => section.length) };
}
