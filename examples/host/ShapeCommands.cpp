// `make`: documents of one object, here the solids.

#include <memory>
#include <string>

#include "Commands.h"
#include "Edit.h"

namespace Host {

namespace {

void AddBox(CLI::App& make) {
    struct Options {
        Coordinates corner;
        Coordinates oppositeCorner;
        std::string output;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = make.add_subcommand("box", "A box along the axes");
    AddPoint(*command, "--from", options->corner, "A corner, three coordinates");
    AddPoint(*command, "--to", options->oppositeCorner, "The opposite corner");
    AddOutput(*command, options->output);
    command->callback([options] {
        StoreAndReport(MakeBox(ToPoint(options->corner), ToPoint(options->oppositeCorner)),
                       options->output);
    });
}

using MakeRoundSolid = Document (*)(const ON_3dPoint&, const ON_3dPoint&, double, size_t);

void AddRoundSolid(CLI::App& make, const std::string& name, const std::string& description,
                   MakeRoundSolid makeSolid) {
    struct Options {
        Coordinates from;
        Coordinates to;
        double radius = 1.0;
        size_t segmentCount = 32;
        std::string output;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = make.add_subcommand(name, description);
    AddPoint(*command, "--from", options->from, "Where the axis begins, three coordinates");
    AddPoint(*command, "--to", options->to, "Where the axis ends");
    command->add_option("--radius", options->radius, "The radius, 1 if not given")
        ->check(IsPositive());
    command
        ->add_option("--segments", options->segmentCount,
                     "Segments around the axis, 32 if not given")
        ->check(IsWholeNumber())
        ->check(CLI::Range(size_t{3}, size_t{10000000}));
    AddOutput(*command, options->output);
    command->callback([options, makeSolid] {
        const ON_3dPoint from = ToPoint(options->from);
        const ON_3dPoint to = ToPoint(options->to);
        if (!(to - from).Unitize())
            throw CLI::ValidationError("--to", "the axis has no direction");
        StoreAndReport(makeSolid(from, to, options->radius, options->segmentCount),
                       options->output);
    });
}

}  // namespace

void AddShapeCommands(CLI::App& app) {
    CLI::App* const make = app.add_subcommand("make", "Makes a document of one object");
    make->require_subcommand(1);
    AddBox(*make);
    AddRoundSolid(*make, "cone", "A cone as the library makes it, with its ring at the first point",
                  MakeCone);
    AddRoundSolid(*make, "cylinder", "A cylinder", MakeCylinder);
    AddGeometryCommands(*make);
}

}  // namespace Host
