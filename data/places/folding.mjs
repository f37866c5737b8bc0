// SPDX-License-Identifier: MIT
// How names are compared: without case, marks and punctuation. core/places/Folding.h says the same of the reader.

const spelled = new Map(
  Object.entries({
    ß: 'ss', æ: 'ae', œ: 'oe', ø: 'o', đ: 'd', ð: 'd', þ: 'th', ł: 'l', ħ: 'h', ı: 'i', ŋ: 'n', ŧ: 't', ə: 'e', ĸ: 'k',
    ƴ: 'y', ɓ: 'b', ɗ: 'd', ɛ: 'e', ɔ: 'o', ɣ: 'g', ɲ: 'n', ʉ: 'u', ɨ: 'i', ƙ: 'k',
  }),
);
const dropped = /^['’‘ʻʼʽ`´ʹʺʿʾˈ\u00ad\u200b-\u200f\u2060\ufeff]$/u;

/// What one character becomes: nothing, a space, or one or more characters.
export function foldCharacter(character) {
  if (dropped.test(character)) return '';
  const plain = character.toLowerCase().normalize('NFKD').replace(/\p{Mn}/gu, '').normalize('NFKC');
  return [...plain]
    .map((each) => spelled.get(each) ?? (/[\p{L}\p{N}\p{Mc}]/u.test(each) ? each : ' '))
    .join('');
}

/// `text` as it is compared: words with one space between them.
export function fold(text) {
  return [...text].map(foldCharacter).join('').replace(/ +/g, ' ').trim();
}
