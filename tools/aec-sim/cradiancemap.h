// A scene from a high-dynamic-range panorama (OpenEXR or Radiance), viewed through a window that pans across it.
#ifndef AECORE_TOOLS_AECSIM_CRADIANCEMAP_H
#define AECORE_TOOLS_AECSIM_CRADIANCEMAP_H

#include <memory>
#include <string>
#include <vector>

#include "simmodel.h"

class CRadianceMap : public ISimScene
{
public:
    // Loads spec.path and scales it so that the mean luminance over all view positions is spec.luminance; null
    // with a message when the file is unreadable.
    static std::unique_ptr<CRadianceMap> Create(const SimSceneSpec& spec, uint32_t width, uint32_t height,
                                                std::string* pError);

    // pan 0..1 places the view's centre across the panorama's width, wrapping round at the seam.
    void                 Render(float pan, float brightness, SimImage* pOut) override;
    SimFlicker           Flicker() const override { return m_flicker; }
    std::vector<SimRect> Faces() const override { return {}; }
    std::string          Name() const override { return m_name; }

private:
    CRadianceMap(std::string name, SimImage map, uint32_t width, uint32_t height, float fieldOfView,
                 SimFlicker flicker);

    // Linear RGB of the panorama at (x, y) in its pixels, bilinear, wrapping across x and clamped in y.
    void Sample(double x, double y, float* pRgb) const;

    std::string m_name;
    SimImage    m_map;
    uint32_t    m_width;  // of the rendered view
    uint32_t    m_height;
    double      m_viewWidth;  // in panorama pixels
    double      m_viewHeight;
    double      m_viewTop;
    SimFlicker  m_flicker;
};

#endif // AECORE_TOOLS_AECSIM_CRADIANCEMAP_H
