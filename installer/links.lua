-- Links between the documents, which are pages here.
function Link(link)
    if not link.target:match("^%a+:") then
        link.target = link.target:gsub("%.md$", ".html"):gsub("%.md#", ".html#")
    end
    return link
end
