// SPDX-License-Identifier: MIT
// The scripts that a country's own place names are written in, where those are not Latin.

const scripts = {
  'Script=Cyrillic': 'RU UA BY BG RS MK KZ KG MN TJ BA ME',
  'Script=Greek': 'GR CY',
  'Script=Armenian': 'AM',
  'Script=Georgian': 'GE',
  'Script=Hebrew': 'IL',
  'Script=Arabic': 'AE AF BH DJ DZ EG EH IQ IR JO KW LB LY MA MR OM PK PS QA SA SD SY TN YE',
  'Script=Thai': 'TH',
  'Script=Lao': 'LA',
  'Script=Khmer': 'KH',
  'Script=Myanmar': 'MM',
  'Script=Hangul': 'KR KP',
  'Script=Han': 'CN TW HK MO SG',
  'Script=Devanagari': 'IN NP',
  'Script=Bengali': 'BD',
  'Script=Sinhala': 'LK',
  'Script=Ethiopic': 'ET ER',
};

export const nativeScripts = { JP: /[\p{Script=Han}\p{Script=Hiragana}\p{Script=Katakana}]/u };
for (const [script, codes] of Object.entries(scripts))
  for (const code of codes.split(' ')) nativeScripts[code] = new RegExp(`\\p{${script}}`, 'u');
