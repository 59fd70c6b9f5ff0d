#include "editor/bridge/BridgeScripts.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(BridgeScriptsTest, TheBridgeIsThisScript)
{
    EXPECT_EQ(bridgeScript(QStringLiteral("https://www.example.org:8443")).toStdString(),
              R"js((function () {
  var EXPECTED_ORIGIN = 'https://www.example.org:8443';
  function sendImage(dataURL) {
    try { window.webkit.messageHandlers.lumenfoldImage.postMessage(dataURL); } catch (e) {}
  }
  window.addEventListener('message', function (event) {
    if (!event || event.origin !== EXPECTED_ORIGIN) return;
    var data = event.data;
    if (!data) return;
    if (data.type === 'loaded') {
      window.webkit.messageHandlers.lumenfoldLoaded.postMessage('loaded');
    } else if (data.type === 'image') {
      if (typeof data.data === 'string') {
        sendImage(data.data);
      } else if (data.blob) {
        var reader = new FileReader();
        reader.onload = function () { sendImage(reader.result); };
        reader.readAsDataURL(data.blob);
      }
    }
  });
})();)js");
}

TEST(BridgeScriptsTest, TheBackgroundIsTheWindows)
{
    const QString script = loadingBackgroundScript();
    EXPECT_TRUE(script.contains(QStringLiteral("'lumenfold-loading-background'")));
    EXPECT_TRUE(script.contains(QStringLiteral(
        "'html, body { background: #171923 !important; background-image: radial-gradient(#EDF2F710 1.2px, transparent "
        "1.2px) !important; background-size: 10px 10px !important; }'")));
}

} // namespace
} // namespace lumenfold::test
