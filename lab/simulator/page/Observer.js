// SPDX-License-Identifier: MIT
// Runs in a world of its own, so that pages find no trace of it: tells the device what the page asks of the viewport and
// whether a text field has the focus.
(() => {
    const tell = (name, value) => window.webkit.messageHandlers[name].postMessage(value);
    const isTop = window.top === window;

    if (isTop && document.contentType === 'text/html' && location.protocol !== 'about:') {
        let told = '';
        const tellViewport = (isFinal) => {
            const metas = document.querySelectorAll('meta[name="viewport" i]');
            if (metas.length === 0 && !isFinal) {
                return;
            }
            const values = {};
            const content = metas.length === 0 ? '' : metas[metas.length - 1].content;
            for (const part of content.split(/[,;\s]+(?=[a-z-]+\s*=)/i)) {
                const [name, value] = part.split('=').map((text) => text.trim().toLowerCase());
                values[name] = value?.replace(/[,;]$/, '');
            }
            const number = parseFloat(values.width);
            const fits = values.width === 'device-width' || (values.width === undefined && parseFloat(values['initial-scale']) > 0);
            const width = fits ? 0 : Number.isFinite(number) ? Math.min(10000, Math.max(200, Math.round(number))) : 980;
            const message = JSON.stringify({ cover: values['viewport-fit'] === 'cover', width });
            if (message !== told) {
                told = message;
                tell('corvantaViewport', message);
            }
        };
        new MutationObserver(() => tellViewport(document.body !== null)).observe(document, {
            childList: true,
            subtree: true,
            attributes: true,
            attributeFilter: ['content', 'name'],
        });
        addEventListener('DOMContentLoaded', () => tellViewport(true));
    }

    // Types of input that no keyboard writes into.
    const other = ['button', 'checkbox', 'color', 'date', 'datetime-local', 'file', 'hidden', 'image', 'month', 'radio', 'range', 'reset', 'submit', 'time', 'week'];
    const isText = (element) =>
        element instanceof Element &&
        (element.isContentEditable ||
            (element.localName === 'textarea' && !element.readOnly && !element.disabled) ||
            (element.localName === 'input' && !element.readOnly && !element.disabled && !other.includes(element.type)));
    const focused = () => {
        let element = document.activeElement;
        while (element?.shadowRoot?.activeElement) {
            element = element.shadowRoot.activeElement;
        }
        return element;
    };
    let touched = -Infinity;
    let editing = false;
    const tellFocus = () => {
        const element = focused();
        const isEditing = isText(element);
        if (isEditing || editing) {
            editing = isEditing;
            const kind = isEditing ? element.inputMode || element.type || 'text' : '';
            tell('corvantaFocus', JSON.stringify({ editing, byHand: performance.now() - touched < 1000, kind }));
        }
    };
    for (const type of ['touchstart', 'touchend', 'mousedown', 'mouseup', 'click']) {
        addEventListener(type, (event) => {
            if (event.isTrusted) {
                touched = performance.now();
            }
            // Tapping the field that has the focus brings back a keyboard that was put away.
            if (type === 'click' && isText(focused())) {
                tellFocus();
            }
        }, { capture: true, passive: true });
    }
    addEventListener('focusin', tellFocus, true);
    addEventListener('focusout', () => setTimeout(tellFocus), true);
    addEventListener('pagehide', () => editing && tell('corvantaFocus', JSON.stringify({ editing: false })));
})();
