// The commands that load a document, edit it and store it.

#include <fmt/core.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Edit.h"
#include "Failure.h"
#include "Output.h"

namespace Host {

namespace {

using WeightType = Vr::VraMeshPrimitive::VertexNormalWeightType;

constexpr double kRadiansPerDegree = ON_PI / 180.0;

// What all editing commands have in common.
struct EditOptions {
    DocumentSource input;
    std::string output;
};

void AddEditOptions(CLI::App& command, EditOptions& options) {
    AddInput(command, options.input);
    AddOutput(command, options.output);
}

// Edits a document and returns what it did, a line each.
using Edit = std::function<std::string(Document&)>;

// Edits, and tells failures for the document that was loaded.
std::string ApplyEdit(const Edit& edit, Document& document, const std::string& input) {
    try {
        return edit(document);
    } catch (...) {
        RethrowAsFailure(input);
    }
}

void EditDocument(const EditOptions& options, const Edit& edit) {
    Document document = LoadDocument(options.input);
    const std::string done = ApplyEdit(edit, document, options.input.path);
    StoreAndReport(document, options.output, done);
}

std::string Clean(Document& document) {
    const DocumentSize before = SizeOf(document);
    const size_t copiedCount = CleanDocument(document);
    const DocumentSize after = SizeOf(document);
    std::string done =
        fmt::format("cleaned: {} -> {} vertices, {} -> {} triangles\n", before.vertexCount,
                    after.vertexCount, before.triangleCount, after.triangleCount);
    if (copiedCount > 0)
        done +=
            fmt::format("  copied because shared: {}\n", Counted(copiedCount, "array", "arrays"));
    return done;
}

void AddClean(CLI::App& app) {
    const auto options = std::make_shared<EditOptions>();
    CLI::App* const command = app.add_subcommand(
        "clean", "Joins equal data, removes degenerate triangles, drops unused vertices");
    AddEditOptions(*command, *options);
    command->callback([options] { EditDocument(*options, Clean); });
}

void AddNormals(CLI::App& app) {
    struct Options : EditOptions {
        bool isFlat = false;
        double creaseAngleDegrees = 0.0;
        std::string weight = "area";
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("normals", "Makes normals");
    AddEditOptions(*command, *options);
    auto* const kind = command->add_option_group("kind");
    kind->add_flag("--flat", options->isFlat, "One normal a triangle");
    CLI::Option* const creaseAngle = kind->add_option(
        "--crease-angle", options->creaseAngleDegrees,
        "Smooth normals, split where triangles meet at more than so many degrees; a negative angle "
        "never splits");
    creaseAngle->check(IsFinite());
    kind->require_option(1);
    command
        ->add_option("--weight", options->weight,
                     "How triangles count in smooth normals, area if not given")
        ->check(CLI::IsMember({"area", "angle"}))
        ->needs(creaseAngle);
    command->callback([options] {
        EditDocument(*options, [&options](Document& document) {
            if (options->isFlat)
                MakeFlatNormals(document);
            else
                MakeSmoothNormals(
                    document, options->creaseAngleDegrees * kRadiansPerDegree,
                    options->weight == "angle" ? WeightType::Angle : WeightType::Area);
            const DocumentSize size = SizeOf(document);
            return fmt::format("made: {} for {}\n", Counted(size.normalCount, "normal", "normals"),
                               Counted(size.triangleCount, "triangle", "triangles"));
        });
    });
}

struct TransformOptions : EditOptions {
    std::vector<double> scale;
    std::vector<double> rotation;
    std::vector<double> translation;
    std::vector<double> matrix;
};

ON_3dVector AxisOf(const TransformOptions& options) {
    return ON_3dVector(options.rotation[1], options.rotation[2], options.rotation[3]);
}

// What cannot be said of one number alone.
void CheckTransform(const TransformOptions& options) {
    if (options.scale.size() == 2)
        throw CLI::ValidationError("--scale", "takes one factor or three");
    if (!options.rotation.empty() && !AxisOf(options).Unitize())
        throw CLI::ValidationError("--rotate", "the axis has no direction");
}

ON_Xform XformOf(const TransformOptions& options) {
    ON_Xform xform(1.0);
    if (options.scale.size() == 1)
        xform.Scale(options.scale[0], options.scale[0], options.scale[0]);
    else if (options.scale.size() == 3)
        xform.Scale(options.scale[0], options.scale[1], options.scale[2]);
    if (!options.rotation.empty()) {
        ON_Xform rotation;
        rotation.Rotation(options.rotation[0] * kRadiansPerDegree, AxisOf(options),
                          ON_3dPoint(0, 0, 0));
        xform = rotation * xform;
    }
    if (!options.translation.empty()) {
        ON_Xform translation;
        translation.Translation(options.translation[0], options.translation[1],
                                options.translation[2]);
        xform = translation * xform;
    }
    if (!options.matrix.empty())
        for (int entry = 0; entry < 16; ++entry)
            xform[entry / 4][entry % 4] = options.matrix[static_cast<size_t>(entry)];
    return xform;
}

void AddTransform(CLI::App& app) {
    const auto options = std::make_shared<TransformOptions>();
    CLI::App* const command = app.add_subcommand(
        "transform",
        "Moves meshes, curves and surfaces: scales, then rotates, then translates them");
    AddEditOptions(*command, *options);
    auto* const kind = command->add_option_group("transformation");
    std::vector<CLI::Option*> steps;
    steps.push_back(kind->add_option("--scale", options->scale,
                                     "One factor, or one each for x, y and z; about the origin")
                        ->expected(1, 3));
    steps.push_back(kind->add_option("--rotate", options->rotation,
                                     "Degrees, then the direction of an axis through the origin")
                        ->expected(4));
    steps.push_back(
        kind->add_option("--translate", options->translation, "Along x, y and z")->expected(3));
    CLI::Option* const matrix =
        kind->add_option("--matrix", options->matrix, "16 numbers, row by row; nothing else then")
            ->expected(16);
    for (CLI::Option* const step : steps) {
        step->check(IsFinite());
        matrix->excludes(step);
    }
    matrix->check(IsFinite());
    kind->require_option(1, 3);
    command->callback([options] {
        CheckTransform(*options);
        EditDocument(*options, [&options](Document& document) {
            const size_t movedCount = TransformDocument(document, XformOf(*options));
            return fmt::format("transformed: {}\n", Counted(movedCount, "object", "objects"));
        });
    });
}

void AddReverse(CLI::App& app) {
    struct Options : EditOptions {
        bool keepsNormals = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("reverse", "Turns triangles and normals to the other side");
    AddEditOptions(*command, *options);
    command->add_flag("--keep-normals", options->keepsNormals, "Leaves the normals as they are");
    command->callback([options] {
        EditDocument(*options, [&options](Document& document) {
            ReverseDocument(document, !options->keepsNormals);
            return fmt::format("reversed: {}\n",
                               Counted(SizeOf(document).triangleCount, "triangle", "triangles"));
        });
    });
}

void AddDeleteFaces(CLI::App& app) {
    struct Options : EditOptions {
        size_t objectNumber = 1;
        std::vector<size_t> triangles;
        bool compacts = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("delete-faces", "Deletes triangles of one object");
    AddEditOptions(*command, *options);
    command->add_option("--object", options->objectNumber, "The object, 1 if not given")
        ->check(IsWholeNumber())
        ->check(IsPositive());
    command
        ->add_option("--faces", options->triangles,
                     "The triangles, counted from 0, with commas or spaces between them")
        ->delimiter(',')
        ->check(IsWholeNumber())
        ->required();
    command->add_flag("--compact", options->compacts,
                      "Also drops the vertices that no triangle of any object uses");
    command->callback([options] {
        EditDocument(*options, [&options](Document& document) {
            const size_t deletedCount =
                DeleteTriangles(document, options->objectNumber - 1, options->triangles);
            if (options->compacts)
                CompactVertices(document);
            return fmt::format("deleted: {}\n", Counted(deletedCount, "triangle", "triangles"));
        });
    });
}

std::string Merge(Document& document) {
    const MergeReport report = MergeObjects(document);
    const DocumentSize size = SizeOf(document);
    std::string done =
        fmt::format("merged: {} -> 1, {}, {}\n", Counted(report.mergedCount, "object", "objects"),
                    Counted(size.vertexCount, "vertex", "vertices"),
                    Counted(size.triangleCount, "triangle", "triangles"));
    if (report.lostNormals)
        done += "  without normals: not all objects have them in the same form\n";
    if (report.lostColors)
        done += "  without colours: not all objects have them in the same form\n";
    if (report.lostUVs)
        done += "  without UVs\n";
    if (const std::string others = CountOthers(document); !others.empty())
        done += fmt::format("  left as they are: {}\n", others);
    return done;
}

void AddMerge(CLI::App& app) {
    const auto options = std::make_shared<EditOptions>();
    CLI::App* const command =
        app.add_subcommand("merge", "Makes one object of all meshes, each distinct value once");
    AddEditOptions(*command, *options);
    command->callback([options] { EditDocument(*options, Merge); });
}

}  // namespace

void AddEditCommands(CLI::App& app) {
    AddClean(app);
    AddNormals(app);
    AddTransform(app);
    AddReverse(app);
    AddDeleteFaces(app);
    AddMerge(app);
}

}  // namespace Host
