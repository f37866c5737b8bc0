// SPDX-License-Identifier: MIT
#include "PageServer.h"

#include <QJsonDocument>
#include <QTcpSocket>
#include <QUrl>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr char page[] = R"html(<!doctype html><meta charset="utf-8"><meta name="viewport" content="width=device-width">
<title>Report</title><style>html { background: #ff00ff; } body { margin: 0; }</style><script>
let geo = 'none';
let speed = null;
const report = () => fetch('/report?' + encodeURIComponent(JSON.stringify({
    page: location.pathname.slice(1), width: innerWidth, height: innerHeight,
    layoutWidth: document.documentElement.clientWidth, media: matchMedia(`(width: ${innerWidth}px)`).matches,
    ratio: devicePixelRatio, touch: navigator.maxTouchPoints, platform: navigator.platform,
    screen: screen.width + 'x' + screen.height, agent: navigator.userAgent, visible: document.visibilityState, geo, speed,
    dark: matchMedia('(prefers-color-scheme: dark)').matches })));
addEventListener('load', () => {
    if (location.pathname.startsWith('/located')) {
        navigator.geolocation.watchPosition(
            position => {
                geo = position.coords.latitude + ',' + position.coords.longitude;
                speed = position.coords.speed;
            },
            error => { geo = 'error ' + error.code; });
    }
    if (location.pathname === '/opener') {
        window.open('/opened');
    }
    report();
    setInterval(report, 100);
});
</script>)html";

/// Reports what a page can know of the device, at once and whenever that may have changed.
constexpr char measuringPage[] = R"html(<!doctype html><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1VIEWPORT-FIT"><title>Measure</title><style>
:root { --top: env(safe-area-inset-top); --right: env(safe-area-inset-right, 1px);
    --bottom: env(safe-area-inset-bottom); --left: env( safe-area-inset-left ); }
body { margin: 0; }
#padded { padding: env(safe-area-inset-top) calc(env(safe-area-inset-right) + 1px) max(3px, env(safe-area-inset-bottom))
    env(safe-area-inset-left); }
.large { height: 100lvh; } .small { height: 100svh; }
</style><div id="padded"></div><div class="large"></div><div class="small"></div><script>
const matches = (query) => matchMedia(query).matches;
const root = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();
// The zoom of the window leaves fractions of a pixel behind.
const height = (name) => Math.floor(document.querySelector(name).getBoundingClientRect().height + 0.1);
const whole = (lengths) => lengths.replace(/[0-9.]+/g, (length) => Math.round(length));
const measure = () => ({
    inner: innerWidth + 'x' + innerHeight, outer: outerWidth + 'x' + outerHeight,
    layout: document.documentElement.clientWidth + 'x' + document.documentElement.clientHeight,
    visual: visualViewport.width + 'x' + visualViewport.height + '@' + visualViewport.scale,
    screen: screen.width + 'x' + screen.height, available: screen.availWidth + 'x' + screen.availHeight,
    depth: screen.colorDepth, ratio: devicePixelRatio, orientation: screen.orientation.type,
    angle: screen.orientation.angle, windowOrientation: orientation,
    safeArea: ['--top', '--right', '--bottom', '--left'].map(root).join(' '),
    padding: whole(getComputedStyle(document.querySelector('#padded')).padding),
    agent: navigator.userAgent, platform: navigator.platform, vendor: navigator.vendor, language: navigator.language,
    touchPoints: navigator.maxTouchPoints, standalone: navigator.standalone,
    touchHandlers: 'ontouchstart' in window, touchEvent: typeof TouchEvent, webkitObject: typeof webkit,
    smallViewport: height('.small'),
    widthQuery: matches(`(width: ${innerWidth}px)`), heightQuery: matches(`(height: ${innerHeight}px)`),
    deviceQuery: matches(`(device-width: ${screen.width}px) and (device-height: ${screen.height}px)`),
    landscape: matches('(orientation: landscape)'), portrait: matches('(orientation: portrait)'),
    resolution: matches(`(resolution: ${devicePixelRatio}dppx)`),
    webkitRatio: matches(`(-webkit-device-pixel-ratio: ${devicePixelRatio})`),
    pointer: ['none', 'coarse', 'fine'].filter((kind) => matches(`(pointer: ${kind})`)).join(),
    anyPointer: ['coarse', 'fine'].filter((kind) => matches(`(any-pointer: ${kind})`)).join(),
    hover: matches('(hover: hover)'), anyHover: matches('(any-hover: hover)'),
    scheme: ['light', 'dark'].filter((scheme) => matches(`(prefers-color-scheme: ${scheme})`)).join(),
    reducedMotion: matches('(prefers-reduced-motion: reduce)'),
    moreContrast: matches('(prefers-contrast: more)'),
    srgb: matches('(color-gamut: srgb)'), p3: matches('(color-gamut: p3)'), highRange: matches('(dynamic-range: high)'),
    displayMode: matches('(display-mode: browser)'), largerLargeViewport: height('.large') > innerHeight,
    gestureEvent: typeof GestureEvent, textSizeAdjust: CSS.supports('-webkit-text-size-adjust', 'none'),
    touchCallout: CSS.supports('-webkit-touch-callout', 'none'), bodyFont: CSS.supports('font', '-apple-system-body'),
});
let last = '';
const report = () => {
    const now = encodeURIComponent(JSON.stringify({ page: location.pathname.slice(1), ...measure() }));
    if (now !== last) {
        last = now;
        fetch('/report?' + now);
    }
};
report();
setInterval(report, 50);
</script>)html";

/// Names fonts of the system's text styles in every way and reports the size and weight of each.
constexpr char stylesPage[] = R"html(<!doctype html><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1"><title>Styles</title>
<link rel="stylesheet" href="/styles.css"><style>
#sheet { color: red; font: -apple-system-body; font-style: italic; }
#later { font: -apple-system-footnote !important; }
@media (min-width: 1px) { #nested { font: -apple-system-headline; } }
@supports (font: -apple-system-body) { #asked { font: -apple-system-title1; } }
#plain { font: 16px serif; }
#scripted, #added, #inserted { font: 10px serif; }
</style><p id="sheet"></p><p id="later"></p><p id="nested"></p><p id="asked"></p><p id="linked"></p><p id="plain"></p>
<p id="attribute" style="color: red; font: -apple-system-caption1"></p><p id="scripted"></p><p id="added"></p>
<p id="inserted"></p><script>
const element = (name) => document.querySelector('#' + name);
element('scripted').style.setProperty('font', '-apple-system-subheadline');
const adopted = new CSSStyleSheet();
adopted.replaceSync('#added { font: -apple-system-title0; }');
document.adoptedStyleSheets = [adopted];
document.querySelector('style').sheet.insertRule('#inserted { font: -apple-system-caption2 !important; }');
const font = (name) => {
    const style = getComputedStyle(element(name));
    return Math.round(parseFloat(style.fontSize) * 10) / 10 + '/' + style.fontWeight;
};
let last = '';
const report = () => {
    const fonts = Object.fromEntries([...document.querySelectorAll('p')].map(({ id }) => [id, font(id)]));
    const now = encodeURIComponent(JSON.stringify({ page: location.pathname.slice(1), ...fonts,
        colour: getComputedStyle(element('sheet')).color, style: getComputedStyle(element('sheet')).fontStyle,
        known: CSS.supports('font', '-apple-system-body') && CSS.supports('(font: -apple-system-headline)'),
        unknown: CSS.supports('font', '-apple-system-nonsense') }));
    if (now !== last) {
        last = now;
        fetch('/report?' + now);
    }
};
setInterval(report, 50);
</script>)html";

constexpr char styleSheet[] = "p { margin: 0; }\n#linked { color: blue; font: -apple-system-title3; }\n";

/// Opens the file chooser at the press of its button and reports what was chosen.
constexpr char filePage[] = R"html(<!doctype html><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1"><title>Files</title>
<input type="file" hidden><button>Send a picture</button><script>
const input = document.querySelector('input');
document.querySelector('button').onclick = () => input.click();
setInterval(async () => fetch('/report?' + encodeURIComponent(JSON.stringify({ page: location.pathname.slice(1),
    file: input.files[0]?.name ?? 'none', text: (await input.files[0]?.text()) ?? '' }))), 100);
</script>)html";

/// Reports what fingers and the keyboard do to it. A field is 40 to 90 from the top, a button 140 to 190, across the
/// page.
constexpr char touchPage[] = R"html(<!doctype html><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1"><title>Touch</title><style>
body { margin: 0; height: 3000px; }
input, button { position: absolute; left: 20px; width: 300px; height: 50px; box-sizing: border-box; }
</style><input style="top: 40px"><button style="top: 140px">Ask</button><script>
const field = document.querySelector('input');
let events = '', answer = 'none';
const report = () => fetch('/report?' + encodeURIComponent(JSON.stringify({ page: location.pathname.slice(1), events,
    answer, text: field.value, scrolled: scrollY, visual: visualViewport.height, inner: innerHeight })));
for (const type of ['touchstart', 'touchend', 'mousedown', 'click']) {
    addEventListener(type, (event) => {
        const touches = event.changedTouches;
        events += type + (touches ? '@' + Math.round(touches[0].clientX) + ',' + Math.round(touches[0].clientY) : '') + ' ';
    });
}
document.querySelector('button').onclick = () => { answer = String(confirm('Really?')); };
setInterval(report, 50);
</script>)html";

} // namespace

PageServer::PageServer() {
    m_server.listen(QHostAddress::LocalHost);
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { serve(); });
}

QString PageServer::url(const QString& name) const {
    return u"http://127.0.0.1:%1/%2"_s.arg(m_server.serverPort()).arg(name);
}

QJsonObject PageServer::last(const QString& name) const {
    const QList<QJsonObject> all = reports(name);
    return all.isEmpty() ? QJsonObject() : all.last();
}

void PageServer::serve() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            if (!socket->peek(32768).contains("\r\n\r\n")) {
                return;
            }
            const QByteArray path = socket->readAll().split(' ').value(1);
            const QByteArray body = answer(path);
            const QByteArray type = path.endsWith(".css") ? "text/css" : "text/html";
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: " + type + "\r\nConnection: close\r\nContent-Length: " +
                          QByteArray::number(body.size()) + "\r\n\r\n" + body);
            socket->disconnectFromHost();
        });
    }
}

QByteArray PageServer::answer(const QByteArray& path) {
    if (path.startsWith("/measure")) {
        return QByteArray(measuringPage).replace("VIEWPORT-FIT", path.contains("cover") ? ", viewport-fit=cover" : "");
    }
    static const QMap<QByteArray, QByteArray> pages{
        {"/touch", touchPage}, {"/styles", stylesPage}, {"/styles.css", styleSheet}, {"/files", filePage}};
    if (pages.contains(path)) {
        return pages[path];
    }
    if (!path.startsWith("/report?")) {
        return page;
    }
    const QJsonObject report =
        QJsonDocument::fromJson(QByteArray::fromPercentEncoding(path.sliced(qsizetype(sizeof "/report?") - 1)))
            .object();
    m_reports[report[u"page"].toString()].append(report);
    return "ok";
}

} // namespace corvanta
