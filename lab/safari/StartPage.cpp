// SPDX-License-Identifier: MIT
#include "StartPage.h"

namespace corvanta::lab {

const char* startPage() {
    return R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Start Page</title>
<style>
  :root { color-scheme: light dark; --ink: #1d1d1f; --soft: #6e6e73; --card: #fff; --ground: #f2f2f7; --accent: #0a66d8; }
  @media (prefers-color-scheme: dark) {
    :root { --ink: #f5f5f7; --soft: #a1a1a6; --card: #2c2c2e; --ground: #1c1c1e; --accent: #64a8ff; }
  }
  * { box-sizing: border-box; }
  body { margin: 0; min-height: 100vh; display: grid; place-items: center; padding: 24px;
         font: 15px/1.5 system-ui, sans-serif; color: var(--ink); background: var(--ground); }
  main { width: min(600px, 100%); }
  h1 { font-size: 26px; line-height: 1.25; margin: 0 0 8px; }
  p { margin: 0 0 20px; color: var(--soft); }
  ol { list-style: none; counter-reset: step; margin: 0; padding: 8px 20px; border-radius: 14px; background: var(--card);
       box-shadow: 0 1px 4px rgb(0 0 0 / .09); }
  li { counter-increment: step; display: flex; gap: 14px; padding: 12px 0; }
  li + li { border-top: 1px solid rgb(128 128 128 / .2); }
  li::before { content: counter(step); flex: none; width: 26px; height: 26px; border-radius: 50%; display: grid;
               place-items: center; font-weight: 600; font-size: 13px; color: var(--card); background: var(--accent); }
  .note { margin: 20px 0 0; font-size: 13px; }
</style>
</head>
<body>
<main>
  <h1>Safari of the device lab</h1>
  <p>A small browser that opens the Web Inspector on the pages of your simulated devices.</p>
  <ol>
    <li><span>Boot a device and open a page on it.</span></li>
    <li><span>Choose the device in the <b>Develop</b> menu, then the page.</span></li>
    <li><span>The page&rsquo;s Web Inspector opens in a window of its own.</span></li>
  </ol>
  <p class="note">No Develop menu? Turn on &ldquo;Show features for web developers&rdquo; in Safari &rsaquo; Settings &rsaquo; Advanced.</p>
</main>
</body>
</html>
)";
}

} // namespace corvanta::lab
