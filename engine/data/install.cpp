// From the verified data file into the world: objects, rooms and what the world needs of sprites.
#include "arena_generated.h"
#include "engine/data/data_file.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/world.h"

namespace arena::data {
namespace {

void install_sprites(const File& content) {
  std::vector<SpriteInfo>& sprites = sprite_infos();
  sprites.clear();
  for (const Sprite* sprite : *content.sprites()) {
    if (static_cast<std::size_t>(sprite->index()) >= sprites.size()) sprites.resize(static_cast<std::size_t>(sprite->index()) + 1);
    SpriteInfo& info = sprites[static_cast<std::size_t>(sprite->index())];
    info.name = sprite->name()->str();
    info.width = sprite->width();
    info.height = sprite->height();
    info.origin_x = sprite->origin_x();
    info.origin_y = sprite->origin_y();
    info.frames = static_cast<std::int32_t>(sprite->frames()->size());
    info.frames_per_second = sprite->frames_per_second();
    info.mask = static_cast<MaskKind>(sprite->mask());
    info.left = sprite->left();
    info.top = sprite->top();
    info.right = sprite->right();
    info.bottom = sprite->bottom();
    if (sprite->precise() != nullptr) info.precise.assign(sprite->precise()->begin(), sprite->precise()->end());
    finish_sprite_info(info);
  }
}

std::vector<std::string> install_objects(const File& content, const std::vector<ObjectDefinition>& extra) {
  std::vector<ObjectDefinition> definitions;
  for (const Object* object : *content.objects()) {
    ObjectDefinition definition;
    definition.name = object->name()->str();
    definition.parent = object->parent();
    definition.sprite = object->sprite();
    definition.mask = object->mask();
    definition.visible = object->visible();
    definition.solid = object->solid();
    definition.persistent = object->persistent();
    for (const auto* event : *object->events()) definition.events.push_back(event->str());
    definitions.push_back(std::move(definition));
  }
  definitions.insert(definitions.end(), extra.begin(), extra.end());
  return object_types().define(std::move(definitions));
}

// Handlers that no object's event table names.
void note_idle_handlers(std::vector<std::string>& problems) {
  std::vector<ObjectDefinition> all = ToolObject::all();
  for (std::int32_t i = 0; i < object_types().count(); ++i) all.push_back(object_types().at(i).definition);
  for (const CompiledFunction* handler : all_handlers()) {
    bool named = false;
    for (const ObjectDefinition& definition : all) {
      for (const std::string& event : definition.events) named = named || handler->name == "ksl_Object_" + definition.name + "_" + event;
    }
    if (!named) problems.push_back(std::string("handler '") + handler->name + "' is named by no object");
  }
}

void install_rooms(const File& content) {
  std::vector<RoomDefinition>& rooms = world().rooms;
  rooms.clear();
  for (const Room* room : *content.rooms()) {
    if (static_cast<std::size_t>(room->index()) >= rooms.size()) rooms.resize(static_cast<std::size_t>(room->index()) + 1);
    RoomDefinition& definition = rooms[static_cast<std::size_t>(room->index())];
    definition.name = room->name()->str();
    definition.width = room->width();
    definition.height = room->height();
    definition.view_width = room->view_width();
    definition.view_height = room->view_height();
    definition.color = room->color();
    definition.persistent = room->persistent();
    for (const Layer* layer : *room->layers()) {
      arena::Layer made;
      made.name = layer->name()->str();
      made.depth = static_cast<double>(layer->depth());
      made.background_sprite = layer->sprite();
      made.background_fill = static_cast<BackgroundFill>(layer->fill());
      made.background_color = layer->color();
      if (const Area* area = layer->area(); area != nullptr) {
        made.background_area = {static_cast<double>(area->x()), static_cast<double>(area->y()), static_cast<double>(area->width()),
                                static_cast<double>(area->height())};
      }
      definition.layers.push_back(made);
    }
    for (const Placement* placed : *room->instances()) {
      definition.instances.push_back({placed->object(), placed->layer(), static_cast<double>(placed->x()), static_cast<double>(placed->y()),
                                      static_cast<double>(placed->angle()), 1, 1});
    }
  }
  world().first_room = content.first_room();
  world().starters.clear();
  if (content.starters() != nullptr) world().starters.assign(content.starters()->begin(), content.starters()->end());
}

}  // namespace

std::vector<std::string> install_in_world(const DataFile& file, const std::vector<ObjectDefinition>& extra) {
  install_sprites(*file.content);
  std::vector<std::string> problems = install_objects(*file.content, extra);
  note_idle_handlers(problems);
  install_rooms(*file.content);
  return problems;
}

}  // namespace arena::data
