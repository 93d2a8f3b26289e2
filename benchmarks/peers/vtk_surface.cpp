#include "vtk_surface.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkImageDataGeometryFilter.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderer.h>
#include <vtkRenderWindow.h>
#include <vtkUnsignedCharArray.h>
#include <vtkWarpScalar.h>

struct VtkSurface::Pipeline {
    vtkNew<vtkFloatArray> values;
    vtkNew<vtkImageData> image;
    vtkNew<vtkImageDataGeometryFilter> geometry;
    vtkNew<vtkWarpScalar> warp;
    vtkNew<vtkPolyDataMapper> mapper;
    vtkNew<vtkActor> actor;
    vtkNew<vtkRenderer> renderer;
    vtkNew<vtkRenderWindow> window;
    vtkNew<vtkUnsignedCharArray> pixels;
};

VtkSurface::VtkSurface(const float* cells, int size) : pipeline_(std::make_unique<Pipeline>())
{
    Pipeline& p = *pipeline_;
    p.values->SetArray(const_cast<float*>(cells), static_cast<vtkIdType>(size) * size, 1);
    p.image->SetDimensions(size, size, 1);
    p.image->SetSpacing(1.0 / (size - 1), 1.0 / (size - 1), 1);
    p.image->GetPointData()->SetScalars(p.values);
    p.geometry->SetInputData(p.image);
    p.warp->SetInputConnection(p.geometry->GetOutputPort());
    p.warp->SetScaleFactor(0.5);
    p.mapper->SetInputConnection(p.warp->GetOutputPort());
    p.mapper->SetScalarRange(0, 1);
    p.actor->SetMapper(p.mapper);
    p.renderer->AddActor(p.actor);
    p.window->SetOffScreenRendering(1);
    p.window->SetMultiSamples(0);
    p.window->SetSize(1200, 800);
    p.window->AddRenderer(p.renderer);
    vtkCamera* camera = p.renderer->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetPosition(0.5, -1, 1.5);
    camera->SetFocalPoint(0.5, 0.5, 0.25);
    camera->SetViewUp(0, 0, 1);
    camera->SetParallelScale(0.6);
    p.renderer->ResetCameraClippingRange();
    turn(0);
}

VtkSurface::~VtkSurface() = default;

void VtkSurface::turn(double degrees)
{
    pipeline_->renderer->GetActiveCamera()->Azimuth(degrees);
    pipeline_->renderer->ResetCameraClippingRange();
    pipeline_->window->Render();
    pipeline_->window->GetPixelData(0, 0, 0, 0, 0, pipeline_->pixels);  // until it is drawn
}
