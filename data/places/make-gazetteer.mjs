// SPDX-License-Identifier: MIT
// Makes the gazetteer from GeoNames data. docs/places.md tells how to run it.
//
// usage: node make-gazetteer.mjs FOLDER-OF-PACKAGES OUTPUT
import crypto from 'node:crypto';
import fs from 'node:fs';
import path from 'node:path';

import { fold, foldCharacter } from './folding.mjs';
import { gazetteerFile, limits } from './gazetteer-file.mjs';
import { nativeScripts } from './native-scripts.mjs';

const [packages, output] = process.argv.slice(2);
const sources = JSON.parse(fs.readFileSync(new URL('sources.json', import.meta.url), 'utf8'));

function read(name) {
  const { package: folder, file, sha256 } = sources.files[name];
  const bytes = fs.readFileSync(path.join(packages, folder, file));
  const found = crypto.createHash('sha256').update(bytes).digest('hex');
  if (found !== sha256) throw new Error(`${folder}/${file} is not the file that sources.json names: ${found}`);
  return bytes.toString('utf8');
}

// Field numbers of the GeoNames table.
const field = { id: 0, name: 1, alternatives: 3, latitude: 4, longitude: 5, kind: 7, country: 8, region: 10, population: 14 };
/// Seats of government are kept even when nobody has counted their people; so is nothing else.
const seats = new Set(['PPLC', 'PPLA', 'PPLA2']);
const abandoned = new Set(['PPLH', 'PPLQ', 'PPLW', 'PPLCH']);

const rows = read('places')
  .split('\n')
  .filter(Boolean)
  .map((line) => line.split('\t'))
  .filter((row) => !abandoned.has(row[field.kind]) && (Number(row[field.population]) > 0 || seats.has(row[field.kind])))
  .sort((a, b) => b[field.population] - a[field.population] || a[field.id] - b[field.id]);

const latin = /^[\p{Script=Latin}\p{N} ]+$/u;
/// The code of an airport.
const code = /^[A-Z]{3}$/;
/// What somebody made of another alphabet letter by letter; nobody types it.
const transliteration = /^[^\p{L}]*\p{Script=Latin}(?<!\p{Lu})/u;
const withoutUmlauts = (text) => text.replace(/([aou])e/g, '$1').replace(/aa/g, 'a');

/// The other spellings that are worth finding a place by: of a city all that lead elsewhere in the alphabet, of a town
/// those in its country's own script, and of both none that says the same as another.
function alternativesOf(row, name) {
  const population = Number(row[field.population]);
  const kept = [name];
  const script = nativeScripts[row[field.country]];
  const spellings = new Set(
    row[field.alternatives]
      .split(',')
      .filter((text) => !code.test(text) && !transliteration.test(text))
      .map(fold),
  );
  const isWorthIt = (text) => {
    if (!latin.test(text)) return population >= 300_000 || (population >= 5_000 && script?.test(text));
    if (population >= 100_000) return text.length > 2;
    return population >= 20_000 && text.length > 3 && !resembles(text, name);
  };
  // Those of the country itself come first, lest a much named city has no room for them.
  const order = (text) => (script?.test(text) ? 0 : 1);
  const candidates = [...spellings]
    .filter((text) => text && isWorthIt(text))
    .sort((a, b) => order(a) - order(b) || a.length - b.length || (a < b ? -1 : 1));
  for (const text of candidates) {
    const isThere = (other) =>
      ` ${other}`.includes(` ${text}`) || text.startsWith(`${other} `) || withoutUmlauts(other) === withoutUmlauts(text);
    if (kept.some(isThere)) continue;
    // One letter more: the longer one is found by the shorter one too.
    const shorter = kept.indexOf(text.slice(0, -1));
    if (shorter > 0) kept[shorter] = text;
    else kept.push(text);
  }
  kept.length = Math.min(kept.length, limits.alternatives + 1);
  return kept.slice(1);
}

function resembles(text, name) {
  let same = 0;
  while (same < text.length && same < name.length && text[same] === name[same]) ++same;
  return same >= 4 || same * 2 >= text.length;
}

const countryNames = JSON.parse(read('countries'));
const regionNames = new Map(JSON.parse(read('regions')).map((region) => [region.code, region.name]));
const countries = [];
const countryIndex = new Map();
const regions = [];
const regionIndex = new Map();

function indexOfCountry(code) {
  if (!countryIndex.has(code)) {
    countryIndex.set(code, countries.length);
    countries.push({ code, name: countryNames[code]?.name ?? countryNames[code] ?? code });
  }
  return countryIndex.get(code);
}

function indexOfRegion(row) {
  const country = row[field.country];
  const code = `${country}.${row[field.region]}`;
  const key = regionNames.has(code) ? code : country;
  if (!regionIndex.has(key)) {
    regionIndex.set(key, regions.length);
    regions.push({
      name: regionNames.get(key) ?? '',
      country: indexOfCountry(country),
      abbreviation: key === code && /^[A-Z]{2,3}$/.test(row[field.region]) ? row[field.region] : '',
    });
  }
  return regionIndex.get(key);
}

const characters = new Set();
const places = rows.map((row) => {
  for (const character of row[field.name] + row[field.alternatives]) characters.add(character);
  return {
    name: row[field.name],
    latitude: Number(row[field.latitude]),
    longitude: Number(row[field.longitude]),
    population: Number(row[field.population]),
    region: indexOfRegion(row),
    alternatives: alternativesOf(row, fold(row[field.name])),
  };
});
for (const region of regions) for (const character of region.name) characters.add(character);
for (const country of countries) for (const character of country.name) characters.add(character);

const { file, sizes } = gazetteerFile({ places, regions, countries, characters, fold, foldCharacter });
fs.writeFileSync(output, file);
console.log(`${places.length} places, ${places.filter((place) => place.population > 0).length} of them with a population`);
console.log(`${regions.length} regions, ${countries.length} countries`);
console.log(`${places.reduce((sum, place) => sum + place.alternatives.length, 0)} other spellings`);
console.log(`sections: ${sizes.join(' ')}`);
console.log(`${file.length} bytes, sha256 ${crypto.createHash('sha256').update(file).digest('hex')}`);
