// SPDX-License-Identifier: MIT
// Runs in each page before its own scripts: the engine answers env(safe-area-inset-…) with 0 on this desktop, so style
// sheets read the same lengths from custom properties, which a user style sheet sets.
(() => {
    const marker = /env\(\s*safe-area-inset-/i;
    const names = /env\(\s*safe-area-inset-(top|right|bottom|left)\b/gi;
    const mend = (text) => (marker.test(text) ? text.replace(names, 'var(--corvanta-safe-area-inset-$1') : text);

    const mendStyle = (style) => {
        const text = style.cssText;
        if (marker.test(text)) {
            style.cssText = mend(text);
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
    const mendSheet = (sheet) => {
        try {
            mendRules(sheet.cssRules);
        } catch {
            // A sheet of another origin that does not allow reading it.
        }
    };
    const mendElement = (element) => {
        if (element.sheet) {
            mendSheet(element.sheet);
        }
        if (element.style && element.hasAttribute('style') && marker.test(element.getAttribute('style'))) {
            mendStyle(element.style);
        }
    };
    const mendTree = (node) => {
        const owner = node.nodeType === Node.TEXT_NODE ? node.parentNode : node;
        if (owner?.nodeType !== Node.ELEMENT_NODE) {
            return;
        }
        mendElement(owner);
        for (const element of owner.querySelectorAll('style, link, [style*="safe-area-inset" i]')) {
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
    wrap(CSSStyleDeclaration.prototype, 'setProperty', withText(1));
})();
