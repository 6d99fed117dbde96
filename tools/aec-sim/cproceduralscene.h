// A built-in scene: a fixed picture at the simulation resolution, already scaled to its mean luminance.
#ifndef AECORE_TOOLS_AECSIM_CPROCEDURALSCENE_H
#define AECORE_TOOLS_AECSIM_CPROCEDURALSCENE_H

#include <string>
#include <vector>

#include "simmodel.h"

class CProceduralScene : public ISimScene
{
public:
    CProceduralScene(std::string name, SimImage image, SimFlicker flicker, std::vector<SimRect> faces);

    // The picture does not move: pan has no effect on a built-in scene.
    void                 Render(float pan, float brightness, SimImage* pOut) override;
    SimFlicker           Flicker() const override { return m_flicker; }
    std::vector<SimRect> Faces() const override { return m_faces; }
    std::string          Name() const override { return m_name; }

private:
    std::string          m_name;
    SimImage             m_image;
    SimFlicker           m_flicker;
    std::vector<SimRect> m_faces;
};

#endif // AECORE_TOOLS_AECSIM_CPROCEDURALSCENE_H
