// `make line`, `arc`, `polyline`, `plane` and `material`: documents of one object of openNURBS.

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Commands.h"
#include "KernelMaterial.h"
#include "Text.h"

namespace Host {

namespace {

constexpr double kRadiansPerDegree = ON_PI / 180.0;

// Of numbers that are fine one by one may come what openNURBS does not take for a curve.
template <class Geometry>
void StoreValid(const std::shared_ptr<Geometry>& geometry, const std::string& output) {
    if (!geometry->IsValid())
        throw std::runtime_error(output + ": that makes no valid object");
    StoreAndReport(Document{{geometry}}, output);
}

ON_3dVector ToVector(const Coordinates& coordinates) {
    return ON_3dVector(coordinates[0], coordinates[1], coordinates[2]);
}

// The plane at a point with two directions; `name` is the option that is to blame.
ON_Plane PlaneOf(const Coordinates& origin, const Coordinates& x, const Coordinates& y,
                 const std::string& name) {
    ON_Plane plane;
    if (!plane.CreateFromFrame(ToPoint(origin), ToVector(x), ToVector(y)))
        throw CLI::ValidationError(name, "the directions span no plane");
    return plane;
}

// What an arc and a rectangle lie in.
struct PlaneOptions {
    Coordinates origin;
    Coordinates xAxis = {1, 0, 0};
    Coordinates yAxis = {0, 1, 0};
    std::string output;
};

void AddPlaneOptions(CLI::App& command, PlaneOptions& options, const std::string& origin,
                     const std::string& description) {
    AddPoint(command, origin, options.origin, description);
    command
        .add_option("--x-axis", options.xAxis, "The direction of the x axis, 1 0 0 if not given")
        ->expected(3)
        ->check(IsFinite());
    command
        .add_option("--y-axis", options.yAxis,
                    "A direction on the side of the y axis, 0 1 0 if not given")
        ->expected(3)
        ->check(IsFinite());
    AddOutput(command, options.output);
}

void AddLine(CLI::App& make) {
    struct Options {
        Coordinates from;
        Coordinates to;
        std::string output;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = make.add_subcommand("line", "A straight curve");
    AddPoint(*command, "--from", options->from, "Where it begins, three coordinates");
    AddPoint(*command, "--to", options->to, "Where it ends");
    AddOutput(*command, options->output);
    command->callback([options] {
        const ON_3dPoint from = ToPoint(options->from);
        const ON_3dPoint to = ToPoint(options->to);
        if (!(to - from).Unitize())
            throw CLI::ValidationError("--to", "the line has no direction");
        StoreValid(std::make_shared<ON_LineCurve>(from, to), options->output);
    });
}

void AddArc(CLI::App& make) {
    struct Options : PlaneOptions {
        double radius = 1.0;
        double angleDegrees = 360.0;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        make.add_subcommand("arc", "An arc from the x axis on towards the y axis");
    AddPlaneOptions(*command, *options, "--center", "Its centre, three coordinates");
    command->add_option("--radius", options->radius, "The radius, 1 if not given")
        ->check(IsPositive());
    command->add_option("--angle", options->angleDegrees, "Degrees, 360 if not given")
        ->check(IsPositive())
        ->check(CLI::Range(0.0, 360.0));
    command->callback([options] {
        const ON_Plane plane = PlaneOf(options->origin, options->xAxis, options->yAxis, "--y-axis");
        const ON_Arc arc(plane, options->radius, options->angleDegrees * kRadiansPerDegree);
        StoreValid(std::make_shared<ON_ArcCurve>(arc), options->output);
    });
}

ON_Polyline PolylineOf(const Coordinates& coordinates) {
    if (coordinates.size() % 3 != 0 || coordinates.size() < 6)
        throw CLI::ValidationError("--points", "takes two points or more, three coordinates each");
    ON_Polyline points;
    for (size_t first = 0; first < coordinates.size(); first += 3)
        points.Append(
            ON_3dPoint(coordinates[first], coordinates[first + 1], coordinates[first + 2]));
    return points;
}

void AddPolyline(CLI::App& make) {
    struct Options {
        Coordinates points;
        std::string output;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = make.add_subcommand("polyline", "Points joined by straight lines");
    command->add_option("--points", options->points, "The points, three coordinates each, in a row")
        ->check(IsFinite())
        ->required();
    AddOutput(*command, options->output);
    command->callback([options] {
        StoreValid(std::make_shared<ON_PolylineCurve>(PolylineOf(options->points)),
                   options->output);
    });
}

void AddPlane(CLI::App& make) {
    struct Options : PlaneOptions {
        std::vector<double> size = {1, 1};
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = make.add_subcommand("plane", "A rectangle as a surface");
    AddPlaneOptions(*command, *options, "--origin", "A corner, three coordinates");
    command->add_option("--size", options->size, "Its size along x and y axis, 1 1 if not given")
        ->expected(2)
        ->check(IsPositive());
    command->callback([options] {
        const auto plane = std::make_shared<ON_PlaneSurface>(
            PlaneOf(options->origin, options->xAxis, options->yAxis, "--y-axis"));
        plane->SetExtents(0, ON_Interval(0.0, options->size[0]), true);
        plane->SetExtents(1, ON_Interval(0.0, options->size[1]), true);
        StoreValid(plane, options->output);
    });
}

struct MaterialOptions {
    std::string name;
    std::vector<int> diffuse = {128, 128, 128};
    double shine = 0.0;
    double transparency = 0.0;
    std::string output;
};

// Shine and transparency come back as floats, so that they are stored as such already: a document that was
// loaded is stored with the same bytes.
std::shared_ptr<ON_Material> MaterialOf(const MaterialOptions& options) {
    const auto name = FromUtf8(options.name);
    if (!name)
        throw CLI::ValidationError("--name", "is no UTF-8");
    const auto material = std::make_shared<ON_Material>();
    SetName(*material, name->c_str());
    material->m_diffuse = ON_Color(options.diffuse[0], options.diffuse[1], options.diffuse[2]);
    SetShine(*material, static_cast<float>(options.shine));
    SetTransparency(*material, static_cast<float>(options.transparency));
    return material;
}

void AddMaterial(CLI::App& make) {
    const auto options = std::make_shared<MaterialOptions>();
    CLI::App* const command = make.add_subcommand("material", "A material");
    command->add_option("--name", options->name, "Its name, none if not given");
    command
        ->add_option("--diffuse", options->diffuse,
                     "Red, green and blue, 0 to 255; 128 128 128 if not given")
        ->expected(3)
        ->check(CLI::Range(0, 255));
    command->add_option("--shine", options->shine, "0 to 255, 0 if not given")
        ->check(CLI::Range(0.0, kGreatestShine));
    command->add_option("--transparency", options->transparency, "0 to 1, 0 if not given")
        ->check(CLI::Range(0.0, 1.0));
    AddOutput(*command, options->output);
    command->callback(
        [options] { StoreAndReport(Document{{MaterialOf(*options)}}, options->output); });
}

}  // namespace

void AddGeometryCommands(CLI::App& make) {
    AddLine(make);
    AddArc(make);
    AddPolyline(make);
    AddPlane(make);
    AddMaterial(make);
}

}  // namespace Host
