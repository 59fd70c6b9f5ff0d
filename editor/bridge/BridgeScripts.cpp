#include "editor/bridge/BridgeScripts.h"

namespace lumenfold {

QString bridgeScript(const QString &origin)
{
    // Not arg(): an origin is put in as it is, whatever it holds.
    return QStringLiteral("(function () {\n"
                          "  var EXPECTED_ORIGIN = '") +
           origin +
           QStringLiteral("';\n"
                          "  function sendImage(dataURL) {\n"
                          "    try { window.webkit.messageHandlers.") +
           imageMessageName.toString() +
           QStringLiteral(".postMessage(dataURL); } catch (e) {}\n"
                          "  }\n"
                          "  window.addEventListener('message', function (event) {\n"
                          "    if (!event || event.origin !== EXPECTED_ORIGIN) return;\n"
                          "    var data = event.data;\n"
                          "    if (!data) return;\n"
                          "    if (data.type === 'loaded') {\n"
                          "      window.webkit.messageHandlers.") +
           loadedMessageName.toString() +
           QStringLiteral(".postMessage('loaded');\n"
                          "    } else if (data.type === 'image') {\n"
                          "      if (typeof data.data === 'string') {\n"
                          "        sendImage(data.data);\n"
                          "      } else if (data.blob) {\n"
                          "        var reader = new FileReader();\n"
                          "        reader.onload = function () { sendImage(reader.result); };\n"
                          "        reader.readAsDataURL(data.blob);\n"
                          "      }\n"
                          "    }\n"
                          "  });\n"
                          "})();");
}

QString loadingBackgroundScript()
{
    return QStringLiteral(R"js((function () {
  function add() {
    var style = document.createElement('style');
    style.id = 'lumenfold-loading-background';
    style.textContent = 'html, body { background: #171923 !important; background-image: radial-gradient(#EDF2F710 1.2px, transparent 1.2px) !important; background-size: 10px 10px !important; }';
    (document.head || document.documentElement).appendChild(style);
  }
  if (document.head || document.documentElement) {
    add();
  } else {
    document.addEventListener('DOMContentLoaded', add, { once: true });
  }
})();)js");
}

} // namespace lumenfold
