// SPDX-License-Identifier: MIT
// Runs in each page before its own scripts: tells what the engine cannot be set to.
((given) => {
    const key = Symbol.for('corvanta.device');
    const define = (target, values) => {
        for (const [name, value] of Object.entries(values)) {
            const get = typeof value === 'function' ? value : () => value;
            Object.defineProperty(target, name, { get, configurable: true, enumerable: true });
        }
    };
    const state = { angle: given.angle, keyboard: 0 };
    const landscape = () => state.angle !== 0;

    define(Navigator.prototype, { maxTouchPoints: given.touchPoints, platform: given.platform, standalone: false });
    define(window, {
        outerWidth: () => (landscape() ? given.screenHeight : given.screenWidth),
        outerHeight: () => (landscape() ? given.screenWidth : given.screenHeight),
        orientation: () => state.angle,
    });
    let onOrientationChange = null;
    Object.defineProperty(window, 'onorientationchange', {
        get: () => onOrientationChange,
        set: (handler) => {
            onOrientationChange = typeof handler === 'function' ? handler : null;
        },
        configurable: true,
        enumerable: true,
    });
    addEventListener('orientationchange', (event) => onOrientationChange?.call(window, event));
    if (typeof ScreenOrientation !== 'undefined') {
        define(ScreenOrientation.prototype, {
            type: () => ({ 0: 'portrait-primary', 90: 'landscape-primary' })[state.angle] ?? 'landscape-secondary',
            angle: () => (state.angle + 360) % 360,
        });
    }

    // The zoom leaves fractions behind the pixels.
    const whole = (name) => {
        const { get } = Object.getOwnPropertyDescriptor(VisualViewport.prototype, name);
        return (viewport) => (viewport.scale === 1 ? Math.floor(get.call(viewport)) : get.call(viewport));
    };
    const layoutWidth = whole('width');
    const layoutHeight = whole('height');
    define(VisualViewport.prototype, {
        width() {
            return layoutWidth(this);
        },
        height() {
            return Math.max(0, layoutHeight(this) - (window.top === window ? state.keyboard : 0));
        },
    });

    Object.defineProperty(window, key, {
        value: (change) => {
            const turned = change.angle !== undefined && change.angle !== state.angle;
            const covered = change.keyboard !== undefined && change.keyboard !== state.keyboard;
            Object.assign(state, change);
            if (turned) {
                dispatchEvent(new Event('orientationchange'));
                screen.orientation?.dispatchEvent(new Event('change'));
            }
            if (covered && window.top === window) {
                visualViewport.dispatchEvent(new Event('resize'));
                // A field below the keyboard is brought into sight.
                const field = document.activeElement?.getBoundingClientRect();
                const end = visualViewport.height - 8;
                if (state.keyboard > 0 && field && field.bottom > end) {
                    scrollBy(0, Math.min(field.bottom - end, field.top));
                }
            }
            for (let index = 0; index < window.length; ++index) {
                try {
                    window[index][key]?.(change);
                } catch {
                    // A frame of another origin keeps what it was loaded with.
                }
            }
        },
    });
})(GIVEN);
