-- Makes a page of the manual, or the whole of it, from a chapter's Markdown. The metadata say how: "ktrcli" and
-- "language" where the tables of fields come from, "whole" whether all chapters stand in one document.

local ktrcli, language, whole, chapter

local function settings(meta)
  ktrcli = pandoc.utils.stringify(meta.ktrcli)
  language = pandoc.utils.stringify(meta.language)
  whole = meta.whole ~= nil
  return nil
end

-- <!-- fields: limit-values --> stands for the table of that page's fields.
local function insertFields(block)
  local page = block.format == "html" and block.text:match("^<!%-%- fields: ([%w-]+) %-%->")
  if not page then
    return nil
  end
  local pipe = io.popen(string.format("'%s' fields --language %s --page %s", ktrcli, language, page))
  local text = pipe:read("a")
  assert(pipe:close() and #text > 0, "no fields of the page " .. page)
  local blocks = pandoc.read(text, "markdown").blocks
  for column, width in ipairs({ 0.16, 0.34, 0.19, 0.12, 0.19 }) do
    blocks[1].colspecs[column][2] = width
  end
  return pandoc.Div(blocks, pandoc.Attr("", { "fields" }))
end

-- Chapters are pages of their own, or parts of the one document, in which no anchor stands twice.
local function lead(link)
  local file, anchor = link.target:match("^([%w-]+)%.md(#?.*)$")
  if file then
    if not whole then
      link.target = file .. ".html" .. anchor
    else
      link.target = anchor ~= "" and anchor or "#" .. file
    end
  end
  return link
end

-- Of the chapters' own tables: as wide as their contents want.
local function letColumnsBe(block)
  for column = 1, #block.colspecs do
    block.colspecs[column][2] = nil
  end
  return block
end

-- What stands beside a picture. A simple viewer knows no figures.
local function describe(paragraph)
  local image = paragraph.content[1]
  if #paragraph.content ~= 1 or image.t ~= "Image" then
    return nil
  end
  return pandoc.Div({ pandoc.Para({ image }), pandoc.Div({ pandoc.Para(image.caption) }, pandoc.Attr("", { "caption" })) },
    pandoc.Attr("", { "picture" }))
end

-- Such a viewer takes the width from the attribute.
local function place(image)
  image.src = image.src:gsub("^.*/images/", "images/")
  image.attributes.width = not whole and "760" or nil
  return image
end

return {
  { Meta = settings, Table = letColumnsBe },
  { RawBlock = insertFields },
  { Para = describe },
  { Link = lead, Image = place },
}
