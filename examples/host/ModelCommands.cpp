// `import` and `export`: between model files and documents.

#include <fmt/core.h>

#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "ModelExport.h"
#include "ModelImport.h"
#include "Output.h"

namespace Host {

namespace {

void ReportImport(const std::string& path, const ImportedModel& model) {
    Print(fmt::format("imported {}: {}, {}\n", path, Counted(model.meshes.size(), "mesh", "meshes"),
                      Counted(model.triangleCount, "triangle", "triangles")));
    if (model.droppedPointCount + model.droppedLineCount > 0)
        Print(fmt::format("  left out: {}, {}\n",
                          Counted(model.droppedPointCount, "point", "points"),
                          Counted(model.droppedLineCount, "line", "lines")));
    if (model.flattenedCount > 0)
        Print(fmt::format("  without normals, because their place flattens them: {}\n",
                          Counted(model.flattenedCount, "mesh", "meshes")));
}

void Import(const std::vector<std::string>& models, const std::string& output) {
    Document document;
    for (const std::string& path : models) {
        const ImportedModel model = ImportModel(path);
        ReportImport(path, model);
        document.objects.insert(document.objects.end(), model.meshes.begin(), model.meshes.end());
    }
    StoreAndReport(document, output);
}

void Export(const DocumentSource& source, const std::string& model) {
    const Document document = LoadDocument(source);
    const size_t triangleCount = ExportModel(document, model);
    Print(fmt::format("exported {}: {}\n", model, Counted(triangleCount, "triangle", "triangles")));
    if (const std::string others = CountOthers(document); !others.empty())
        Print(fmt::format("  left out: {}\n", others));
}

void AddImport(CLI::App& app) {
    struct Options {
        std::vector<std::string> models;
        std::string output;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("import", "Makes a document of the meshes of one or more model files");
    command->add_option("model", options->models, "Model files, of any format Assimp reads")
        ->required();
    AddOutput(*command, options->output);
    command->callback([options] { Import(options->models, options->output); });
}

void AddExport(CLI::App& app) {
    struct Options {
        DocumentSource document;
        std::string model;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("export", "Writes the meshes of a document to a model file");
    AddInput(*command, options->document);
    command
        ->add_option("model", options->model,
                     "The model file; its extension says the format (obj, stl, ply, gltf...)")
        ->required();
    command->callback([options] { Export(options->document, options->model); });
}

}  // namespace

void AddModelCommands(CLI::App& app) {
    AddImport(app);
    AddExport(app);
}

}  // namespace Host
