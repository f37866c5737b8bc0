// SPDX-License-Identifier: MIT
// Runs in each page before its own scripts: what the device's engine knows in style sheets and this one does not, written
// with custom properties, which a user style sheet sets. env(safe-area-inset-…) is known and 0 on this desktop; the fonts
// of the system's text styles are not known, and their declarations are gone once a sheet is parsed.
(() => {
    const styles = '((?:short-|tall-)?(?:headline|subheadline|body|footnote|caption[12]|title[0-3]))';
    const insetMarker = /env\(\s*safe-area-inset-/i;
    const insets = /env\(\s*safe-area-inset-(top|right|bottom|left)\b/gi;
    const asked = new RegExp(`\\(\\s*font\\s*:\\s*-apple-system-${styles}\\s*\\)`, 'gi');
    const fonts = new RegExp(`\\bfont\\s*:\\s*-apple-system-${styles}(?![\\w-])(\\s*!\\s*important)?`, 'gi');
    const onlyFont = new RegExp(`^\\s*-apple-system-${styles}\\s*$`, 'i');
    // Each part by itself: a shorthand that holds a variable cannot be read back once a part of it is set otherwise.
    const partsOf = (style) =>
        Object.entries({
            'font-style': 'normal',
            'font-variant': 'normal',
            'font-stretch': 'normal',
            'font-weight': /^(short-)?headline$/i.test(style) ? '600' : '400',
            'font-size': `var(--corvanta-font-${style.toLowerCase()})`,
            'line-height': 'normal',
            'font-family': 'system-ui',
        });
    const hasFonts = (text) => text.search(fonts) >= 0;
    const mendFonts = (text) =>
        text
            .replace(asked, '(font: caption)')
            .replace(fonts, (_, style, important = '') =>
                partsOf(style).map(([name, value]) => `${name}: ${value}${important}`).join('; '));
    const mendInsets = (text) => (insetMarker.test(text) ? text.replace(insets, 'var(--corvanta-safe-area-inset-$1') : text);
    const mend = (text) => mendFonts(mendInsets(text));
    // The style that a value names, if it is that of a font.
    const fontIn = (name, value) => (String(name).toLowerCase() === 'font' ? onlyFont.exec(value)?.[1] : undefined);

    const mendStyle = (style) => {
        const text = style.cssText;
        if (insetMarker.test(text)) {
            style.cssText = mendInsets(text);
        }
    };
    const mendRules = (rules) => {
        for (const rule of rules) {
            if (rule.style) {
                mendStyle(rule.style);
            }
            if (rule.cssRules) {
                mendRules(rule.cssRules);
            }
            if (rule.styleSheet) {
                mendSheet(rule.styleSheet);
            }
        }
    };
    // Texts of sheets from elsewhere that name such fonts, by address.
    const texts = new Map();
    const addFonts = (sheet, text) => {
        if (!hasFonts(text)) {
            return;
        }
        const twin = new CSSStyleSheet();
        twin.replaceSync(mendFonts(text));
        const twins = [...twin.cssRules];
        const rules = [...sheet.cssRules].filter((rule) => !(rule instanceof CSSImportRule));
        if (rules.length !== twins.length) {
            // A script was here before.
            return;
        }
        rules.forEach((rule, index) => {
            const wanted = twins[index].cssText;
            if (wanted.includes('--corvanta-font-') && !rule.cssText.includes('--corvanta-font-')) {
                const place = [...sheet.cssRules].indexOf(rule);
                sheet.deleteRule(place);
                sheet.insertRule(wanted, place);
            }
        });
    };
    const mendSheet = (sheet, text = texts.get(sheet.href)) => {
        try {
            if (text !== undefined) {
                addFonts(sheet, text);
            }
            mendRules(sheet.cssRules);
        } catch {
            // A sheet of another origin that does not allow reading it.
        }
    };
    const mendElement = (element) => {
        if (element.sheet) {
            mendSheet(element.sheet, element.localName === 'style' ? element.textContent : undefined);
        }
        const text = element.style ? element.getAttribute('style') : null;
        if (text && hasFonts(text)) {
            element.style.cssText = mend(text);
        } else if (text && insetMarker.test(text)) {
            mendStyle(element.style);
        }
    };
    const mendTree = (node) => {
        const owner = node.nodeType === Node.TEXT_NODE ? node.parentNode : node;
        if (owner?.nodeType !== Node.ELEMENT_NODE) {
            return;
        }
        mendElement(owner);
        for (const element of owner.querySelectorAll('style, link, [style*="safe-area-inset" i], [style*="-apple-system-" i]')) {
            mendElement(element);
        }
    };

    const observer = new MutationObserver((changes) => {
        for (const { type, target, addedNodes } of changes) {
            if (type === 'childList') {
                addedNodes.forEach(mendTree);
                if (target.localName === 'style') {
                    mendElement(target);
                }
            } else {
                mendElement(type === 'characterData' ? target.parentNode ?? document.documentElement : target);
            }
        }
    });
    const watch = (root) => {
        observer.observe(root, {
            childList: true,
            subtree: true,
            characterData: true,
            attributes: true,
            attributeFilter: ['style', 'media', 'rel', 'href', 'disabled'],
        });
        root.addEventListener('load', (event) => mendElement(event.target), true);
    };
    watch(document);

    // The device tells the texts of sheets that name such fonts, as a page cannot read them itself.
    const key = Symbol.for('corvanta.styles');
    Object.defineProperty(window, key, {
        value: (address, text) => {
            texts.set(address, text);
            for (const sheet of document.styleSheets) {
                mendSheet(sheet, sheet.ownerNode?.localName === 'style' ? sheet.ownerNode.textContent : texts.get(sheet.href));
            }
            for (let index = 0; index < window.length; ++index) {
                try {
                    window[index][key]?.(address, text);
                } catch {
                    // A frame of another origin.
                }
            }
        },
    });

    const wrap = (target, name, change) => {
        const original = target[name];
        if (typeof original === 'function') {
            target[name] = { [name](...values) { return change(original, this, values); } }[name];
        }
    };
    wrap(Element.prototype, 'attachShadow', (original, element, values) => {
        const root = original.apply(element, values);
        watch(root);
        return root;
    });
    const withText = (position) => (original, target, values) => {
        if (typeof values[position] === 'string') {
            values[position] = mend(values[position]);
        }
        return original.apply(target, values);
    };
    wrap(CSSStyleSheet.prototype, 'insertRule', withText(0));
    wrap(CSSStyleSheet.prototype, 'addRule', withText(1));
    wrap(CSSStyleSheet.prototype, 'replace', withText(0));
    wrap(CSSStyleSheet.prototype, 'replaceSync', withText(0));
    wrap(CSSGroupingRule.prototype, 'insertRule', withText(0));
    const setFont = (style, font, priority) => partsOf(font).forEach(([name, value]) => style.setProperty(name, value, priority));
    wrap(CSSStyleDeclaration.prototype, 'setProperty', (original, target, values) => {
        const font = fontIn(values[0], values[1]);
        return font ? setFont(target, font, values[2]) : withText(1)(original, target, values);
    });
    wrap(CSS, 'supports', (original, target, values) =>
        fontIn(values[0], values[1]) ? true : withText(0)(original, target, values));
    const text = Object.getOwnPropertyDescriptor(CSSStyleDeclaration.prototype, 'cssText');
    Object.defineProperty(CSSStyleDeclaration.prototype, 'cssText', {
        ...text,
        set(value) {
            text.set.call(this, typeof value === 'string' ? mend(value) : value);
        },
    });
})();
