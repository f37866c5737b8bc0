// SPDX-License-Identifier: MIT
#include "DeviceStyle.h"

#include <gtk/gtk.h>

namespace corvanta::lab {

namespace {

constexpr char deviceStyle[] = R"css(
.browser-bar { background: #f7f7f9; color: #0a66d6; }
.browser-bar button { min-width: 0; min-height: 0; padding: 0; margin: 0; border: none; background: transparent;
  box-shadow: none; text-shadow: none; color: #0a66d6; -gtk-icon-shadow: none; }
.browser-bar button:hover { color: #003f91; }
.browser-bar button:focus { outline: 2px solid #0a66d6; outline-offset: -2px; }
.browser-bar button:disabled { color: #b4b4bb; }
.browser-bar label { color: #1c1c1e; min-width: 0; min-height: 0; }
.browser-bar entry { color: #1c1c1e; min-height: 0; padding: 0; border: none; background: transparent;
  box-shadow: none; }
.browser-bar .address { background: #e4e4e9; }
.browser-bar .page-count { color: #0a66d6; border: 1.5px solid #0a66d6; font-weight: 600; }
.browser-bar button:disabled .page-count { color: #b4b4bb; border-color: #b4b4bb; }
.dark .browser-bar { background: #1c1c1e; }
.dark .browser-bar button, .dark .browser-bar .page-count { color: #4a9eff; border-color: #4a9eff; }
.dark .browser-bar button:hover { color: #8cc2ff; }
.dark .browser-bar button:disabled, .dark .browser-bar button:disabled .page-count { color: #5b5b60;
  border-color: #5b5b60; }
.dark .browser-bar label, .dark .browser-bar entry { color: #f2f2f7; }
.dark .browser-bar .page-count { color: #4a9eff; }
.dark .browser-bar .address { background: #3a3a3c; }

.pages { background: #ffffff; }
.dark .pages { background: #000000; }
.start-page label, .page-message label { color: #636366; margin: 0 12px; }
.start-page .start-page-title, .page-message .page-message-title { color: #1c1c1e; font-size: 20px;
  font-weight: 600; }
.dark .start-page label, .dark .page-message label { color: #a1a1a8; }
.dark .start-page .start-page-title, .dark .page-message .page-message-title { color: #f2f2f7; }
.page-message { background: #ffffff; padding: 8px; }
.dark .page-message { background: #000000; }
.page-message button { padding: 6px 18px; border: none; border-radius: 16px; background: #0a66d6;
  box-shadow: none; text-shadow: none; }
.page-message button label { color: #ffffff; margin: 0; }

.sheet-backdrop { background: rgba(0, 0, 0, 0.38); }
.sheet { background: #f6f6f9; color: #111113; }
.sheet label { color: #111113; }
.sheet-title { font-weight: 600; }
.sheet entry { min-height: 0; padding: 5px 7px; margin-top: 8px; background: #ffffff; color: #111113;
  border: 1px solid #c8c8ce; border-radius: 7px; box-shadow: none; }
.sheet .sheet-button { min-height: 0; margin: 0; border: 0 solid #d2d2d7; border-radius: 0; background: transparent;
  box-shadow: none; text-shadow: none; }
.sheet .sheet-button.below { border-top-width: 1px; }
.sheet .sheet-button.beside { border-top-width: 1px; border-left-width: 1px; }
.sheet .sheet-button label { color: #0a66d6; }
.sheet .sheet-button.sheet-default label { font-weight: 600; }
.sheet .sheet-button:hover { background: rgba(0, 0, 0, 0.06); }
.sheet .sheet-button:focus { outline: 2px solid #0a66d6; outline-offset: -4px; }
.dark .sheet { background: #2a2a2d; }
.dark .sheet label { color: #f2f2f7; }
.dark .sheet entry { background: #1c1c1e; color: #f2f2f7; border-color: #48484d; }
.dark .sheet .sheet-button { border-color: #444449; }
.dark .sheet .sheet-button label { color: #4a9eff; }

.sheet list { background: transparent; }
.sheet list row { padding: 7px 8px; border-radius: 7px; }
.sheet list row:selected { background: #0a66d6; }
.sheet list row:selected label { color: #ffffff; }

.overview { background: #ececf1; }
.dark .overview { background: #111113; }
.overview label { color: #1c1c1e; }
.dark .overview label { color: #f2f2f7; }
.overview .overview-card { padding: 0; margin: 6px; border: none; border-radius: 10px; background: #ffffff;
  box-shadow: 0 1px 5px rgba(0, 0, 0, 0.28); }
.overview .overview-card:focus { outline: 2px solid #0a66d6; }
.overview .overview-close { min-width: 0; min-height: 0; padding: 3px; margin: 10px; border: none;
  border-radius: 12px; background: rgba(60, 60, 67, 0.72); color: #ffffff; box-shadow: none;
  -gtk-icon-shadow: none; }
.overview .overview-done { border: none; background: transparent; box-shadow: none; text-shadow: none;
  padding: 6px 18px 14px 18px; }
.overview .overview-done label { color: #0a66d6; font-weight: 600; }
.dark .overview .overview-done label { color: #4a9eff; }

.device-menu { min-width: 0; min-height: 0; padding: 3px 6px; margin: 4px; border: none; border-radius: 10px;
  background: rgba(255, 255, 255, 0.10); color: #d8d8dd; box-shadow: none; -gtk-icon-shadow: none; }
.device-menu:hover { background: rgba(255, 255, 255, 0.22); }
)css";

} // namespace

void addDeviceStyle() {
    GtkCssProvider* provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, deviceStyle, -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
}

} // namespace corvanta::lab
