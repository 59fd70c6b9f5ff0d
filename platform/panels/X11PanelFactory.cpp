#include "platform/panels/X11PanelFactory.h"

#include "platform/panels/PanelStage.h"
#include "platform/panels/X11Panel.h"

#include <utility>

namespace lumenfold {

X11PanelFactory::X11PanelFactory(std::unique_ptr<x11::X11Connection> connection, Surroundings surroundings)
    : m_stage(std::make_unique<PanelStage>(std::move(connection), surroundings.taps, surroundings.screens,
                                           std::move(surroundings.onLeftWithoutTrace)))
{
}

X11PanelFactory::~X11PanelFactory() = default;

std::unique_ptr<Panel> X11PanelFactory::makePanel(const PanelOptions &options, const Rect &frame)
{
    return std::make_unique<X11Panel>(*m_stage, options, frame);
}

bool X11PanelFactory::isTranslucencyAvailable() const
{
    return m_stage->translucency() == Translucency::available;
}

} // namespace lumenfold
