// A built-in scene: a fixed picture at the simulation resolution, already scaled to its mean luminance.
#include "cproceduralscene.h"

#include <utility>

#include "csimscenes.h"

CProceduralScene::CProceduralScene(std::string name, SimImage image, SimFlicker flicker, std::vector<SimRect> faces)
    : m_name(std::move(name)), m_image(std::move(image)), m_flicker(flicker), m_faces(std::move(faces))
{
}

void CProceduralScene::Render(float pan, float brightness, SimImage* pOut)
{
    (void)pan;
    *pOut = m_image;
    ScaleImage(pOut, brightness);
}
